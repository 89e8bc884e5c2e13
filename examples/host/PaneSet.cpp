#include "PaneSet.h"

#include "CctStrip.h"
#include "ChromaticityChart.h"
#include "ColorEditor.h"
#include "Crossfader.h"
#include "FixtureTable.h"
#include "SwatchBrowser.h"

#include <QHBoxLayout>
#include <QSplitter>
#include <QVBoxLayout>

namespace {

constexpr int MARGIN = 6;
constexpr int CROSSFADER_WIDTH = 190;

/// What \a layout holds, with a margin, as a pane of a splitter.
QWidget *makePane(QLayout *layout)
{
    auto *pane = new QWidget;
    layout->setContentsMargins(MARGIN, MARGIN, MARGIN, MARGIN);
    pane->setLayout(layout);
    return pane;
}

QWidget *makePane(QWidget *content)
{
    auto *layout = new QVBoxLayout;
    layout->addWidget(content);
    return makePane(layout);
}

QWidget *makeChartPane(const PaneSet &panes)
{
    auto *layout = new QVBoxLayout;
    layout->addWidget(panes.chart, 1);
    layout->addWidget(panes.cctStrip);
    return makePane(layout);
}

QWidget *makePatchPane(const PaneSet &panes)
{
    auto *layout = new QHBoxLayout;
    layout->addWidget(panes.table, 1);
    layout->addWidget(panes.crossfader);
    panes.crossfader->setMinimumWidth(CROSSFADER_WIDTH);
    panes.crossfader->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    return makePane(layout);
}

} // namespace

PaneSet PaneSet::make(QUndoStack *undo, Patch *patch)
{
    PaneSet panes;
    panes.browser = new SwatchBrowser(undo);
    panes.chart = new ChromaticityChart;
    panes.cctStrip = new CctStrip;
    panes.editor = new ColorEditor;
    panes.table = new FixtureTable(patch);
    panes.crossfader = new Crossfader;
    panes.chartPane = makeChartPane(panes);

    panes.columns = new QSplitter(Qt::Horizontal);
    panes.columns->addWidget(makePane(panes.browser));
    panes.columns->addWidget(panes.chartPane);
    panes.columns->addWidget(makePane(panes.editor));
    panes.columns->setSizes({270, 370, 384});
    for (int column = 0; column < panes.columns->count(); ++column) {
        panes.columns->setStretchFactor(column, 1);
        panes.columns->setCollapsible(column, false);
    }

    panes.rows = new QSplitter(Qt::Vertical);
    panes.rows->addWidget(panes.columns);
    panes.rows->addWidget(makePatchPane(panes));
    panes.rows->setSizes({390, 230});
    panes.rows->setStretchFactor(0, 1);
    panes.rows->setStretchFactor(1, 1);
    panes.rows->setCollapsible(0, false);
    panes.rows->setCollapsible(1, false);
    return panes;
}
