#pragma once

#include "Fixture.h"

#include <QDialog>
#include <QVector>

class Patch;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;

/// Asks for new fixtures of one kind, which stand one behind the other in a universe.
class AddFixturesDialog : public QDialog
{
    Q_OBJECT

public:
    /// Proposes the first free place in the patch, which outlives the dialog.
    explicit AddFixturesDialog(const Patch *patch, QWidget *parent = nullptr);

    /// The fixtures as they are asked for now.
    QVector<Fixture> fixtures() const;

private:
    void onProfileChanged();
    void proposeAddress();
    bool isFree() const;
    void showPlaces();
    Fixture kind() const;

    const Patch *m_patch;
    QLineEdit *m_name;
    QComboBox *m_profile;
    QComboBox *m_mode;
    QComboBox *m_resolution;
    QSpinBox *m_count;
    QSpinBox *m_universe;
    QSpinBox *m_address;
    QLabel *m_places;
    QPushButton *m_add;
    bool m_isAddressChosen = false; ///< by the user; otherwise it follows the other fields
};
