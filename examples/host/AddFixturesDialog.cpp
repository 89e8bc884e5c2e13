#include "AddFixturesDialog.h"

#include "Patch.h"

#include <IOModeFactory.h>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

#include <algorithm>

namespace {

QSpinBox *makeSpinBox(int minimum, int maximum, int value)
{
    auto *box = new QSpinBox;
    box->setRange(minimum, maximum);
    box->setValue(value);
    return box;
}

} // namespace

AddFixturesDialog::AddFixturesDialog(const Patch *patch, QWidget *parent)
    : QDialog(parent)
    , m_patch(patch)
    , m_name(new QLineEdit(tr("Fixture")))
    , m_profile(new QComboBox)
    , m_mode(new QComboBox)
    , m_resolution(new QComboBox)
    , m_count(makeSpinBox(1, Fixture::SLOTS, 1))
    , m_universe(makeSpinBox(0, Fixture::MAX_UNIVERSE, 1))
    , m_address(makeSpinBox(1, Fixture::SLOTS, 1))
    , m_places(new QLabel)
{
    setWindowTitle(tr("Add Fixtures"));
    m_name->setMaxLength(Fixture::MAX_NAME_LENGTH);
    m_places->setWordWrap(true);
    for (const ColorUtils::HuelockProfileID id : ColorUtils::huelockProfileIDList(true))
        m_profile->addItem(ColorUtils::huelockProfileIDName(id), int(id));
    for (const int resolution : Fixture::RESOLUTIONS)
        m_resolution->addItem(tr("%1 bit").arg(resolution * 8), resolution);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    m_add = buttons->addButton(tr("Add"), QDialogButtonBox::AcceptRole);
    m_add->setDefault(true);
    auto *form = new QFormLayout(this);
    form->addRow(tr("&Name:"), m_name);
    form->addRow(tr("&Profile:"), m_profile);
    form->addRow(tr("&Mode:"), m_mode);
    form->addRow(tr("&Resolution:"), m_resolution);
    form->addRow(tr("Num&ber:"), m_count);
    form->addRow(tr("&Universe:"), m_universe);
    form->addRow(tr("&Address:"), m_address);
    form->addRow(m_places);
    form->addRow(buttons);

    const auto changed = QOverload<int>::of(&QComboBox::currentIndexChanged);
    const auto valueChanged = QOverload<int>::of(&QSpinBox::valueChanged);
    connect(m_profile, changed, this, &AddFixturesDialog::onProfileChanged);
    connect(m_mode, changed, this, &AddFixturesDialog::proposeAddress);
    connect(m_resolution, changed, this, &AddFixturesDialog::proposeAddress);
    connect(m_count, valueChanged, this, &AddFixturesDialog::proposeAddress);
    connect(m_universe, valueChanged, this, &AddFixturesDialog::proposeAddress);
    connect(m_address, valueChanged, this, [this] {
        m_isAddressChosen = true;
        showPlaces();
    });
    connect(m_name, &QLineEdit::textChanged, this, &AddFixturesDialog::showPlaces);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    onProfileChanged();
}

void AddFixturesDialog::onProfileChanged()
{
    const auto profile = ColorUtils::HuelockProfileID(m_profile->currentData().toInt());
    const QSignalBlocker blocker(m_mode);
    m_mode->clear();
    for (const ColorUtils::IOModeID id : ColorUtils::ioModesForHuelockProfileID(profile))
        m_mode->addItem(IOModeFactory::instance()->nameForIOModeID(id), int(id));
    m_mode->setCurrentIndex(m_mode->findData(int(ColorUtils::defaultIOModeIDForHuelockProfileID(profile))));
    proposeAddress();
}

Fixture AddFixturesDialog::kind() const
{
    Fixture fixture = Fixture::withDefaults(ColorUtils::HuelockProfileID(m_profile->currentData().toInt()));
    fixture.setMode(ColorUtils::IOModeID(m_mode->currentData().toInt()));
    fixture.resolution = m_resolution->currentData().toInt();
    fixture.universe = m_universe->value();
    fixture.address = m_address->value();
    return fixture;
}

QVector<Fixture> AddFixturesDialog::fixtures() const
{
    QVector<Fixture> result;
    Fixture fixture = kind();
    const QString name = Fixture::nameFrom(m_name->text());
    for (int number = 1; number <= m_count->value(); ++number) {
        fixture.name = m_count->value() == 1
                           ? m_patch->freeName(name)
                           : m_patch->freeName(QStringLiteral("%1 %2").arg(name, QString::number(number)));
        result.append(fixture);
        fixture.address += fixture.footprint();
    }
    return result;
}

void AddFixturesDialog::proposeAddress()
{
    if (!m_isAddressChosen) {
        const int address = m_patch->freeAddress(m_universe->value(), kind().footprint() * m_count->value());
        const QSignalBlocker blocker(m_address);
        m_address->setValue(address == 0 ? 1 : address);
    }
    showPlaces();
}

/// Whether no fixture has any of the slots.
bool AddFixturesDialog::isFree() const
{
    const int last = m_address->value() + kind().footprint() * m_count->value() - 1;
    const QVector<Fixture> &others = m_patch->fixtures();
    return std::none_of(others.cbegin(), others.cend(), [&](const Fixture &other) {
        return other.universe == m_universe->value() && other.address <= last
               && m_address->value() <= other.lastAddress();
    });
}

void AddFixturesDialog::showPlaces()
{
    const int last = m_address->value() + kind().footprint() * m_count->value() - 1;
    const bool fits = last <= Fixture::SLOTS;
    const QString universe = QString::number(m_universe->value());
    QString places =
        tr("Slots %1 to %2 of universe %3").arg(QString::number(m_address->value()), QString::number(last), universe);
    if (!fits)
        places = tr("These need slots up to %1; a universe has %2.")
                     .arg(QString::number(last), QString::number(Fixture::SLOTS));
    else if (!isFree())
        places += QLatin1Char('\n') + tr("They overlap others of the universe.");
    m_places->setText(places);
    m_add->setEnabled(fits && !Fixture::nameFrom(m_name->text()).isEmpty());
}
