#pragma once

class ChromaticityChart;
class CctStrip;
class ColorEditor;
class Crossfader;
class FixtureTable;
class Patch;
class QSplitter;
class QUndoStack;
class QWidget;
class SwatchBrowser;

/// The panes of the window and how they stand together.
struct PaneSet
{
    SwatchBrowser *browser = nullptr;
    ChromaticityChart *chart = nullptr;
    CctStrip *cctStrip = nullptr;
    ColorEditor *editor = nullptr;
    FixtureTable *table = nullptr;
    Crossfader *crossfader = nullptr;
    QWidget *chartPane = nullptr; ///< with chart and strip
    QSplitter *columns = nullptr; ///< swatches, chart, editor
    QSplitter *rows = nullptr;    ///< the columns above the patch

    /// Makes all panes; \a rows is the widget that holds them, and owns them.
    static PaneSet make(QUndoStack *undo, Patch *patch);
};
