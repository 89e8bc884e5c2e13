#include "PaneTest.h"

#include "ColorEditor.h"
#include "ColorForm.h"
#include "ColorMime.h"
#include "ColorPreview.h"
#include "GradientSlider.h"

#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QTabBar>
#include <QTabWidget>

#include <memory>

/// The editor under mouse and keyboard.
class tst_ColorEditor : public TrelTest
{
    Q_OBJECT

protected:
    void setUp() override;
    void tearDown() override;

private Q_SLOTS:
    void showsAColorInAllForms();
    void numbersAreTyped_data();
    void numbersAreTyped();
    void slidersAreDragged();
    void slidersByKeyboard();
    void textsAreTaken_data();
    void textsAreTaken();
    void badTextsAreExplained();
    void greyKeepsItsHue();
    void whiteKeepsItsNumbers();
    void alphaStays();
    void colorsThatAreNotWhite();
    void channelsFollowTheProfile();
    void gamutIsShown();
    void dropsAreTaken();
    void swatchIsDragged();
    void goesWhileItIsTypedInto();
    void settingDoesNotEmit();
    void unusableColorsAreIgnored();
    void everythingHasAName();
    void pictures();

private:
    void turnTo(ColorForm::Kind kind);
    QDoubleSpinBox &number(const QString &name) const;
    GradientSlider &slider(const QString &name) const;
    QLineEdit &text() const;
    QString message() const;

    std::unique_ptr<ColorEditor> m_editor;
    std::unique_ptr<QSignalSpy> m_spy;
};

void tst_ColorEditor::setUp()
{
    m_editor = std::make_unique<ColorEditor>();
    m_spy = std::make_unique<QSignalSpy>(m_editor.get(), &ColorEditor::colorChanged);
    QVERIFY(PaneTest::present(*m_editor, QSize(384, 360)));
}

void tst_ColorEditor::tearDown()
{
    m_spy.reset();
    m_editor.reset();
}

void tst_ColorEditor::turnTo(ColorForm::Kind kind)
{
    auto *tabs = m_editor->findChild<QTabWidget *>();
    QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, {}, tabs->tabBar()->tabRect(kind).center());
    QCOMPARE(tabs->currentIndex(), int(kind));
}

QDoubleSpinBox &tst_ColorEditor::number(const QString &name) const
{
    for (QDoubleSpinBox *box : m_editor->findChildren<QDoubleSpinBox *>()) {
        if (box->accessibleName() == name && box->isVisible())
            return *box;
    }
    qFatal("no number %s", qPrintable(name));
}

GradientSlider &tst_ColorEditor::slider(const QString &name) const
{
    for (GradientSlider *each : m_editor->findChildren<GradientSlider *>()) {
        if (each->accessibleName() == name && each->isVisible())
            return *each;
    }
    qFatal("no slider %s", qPrintable(name));
}

QLineEdit &tst_ColorEditor::text() const
{
    for (QLineEdit *edit : m_editor->findChildren<QLineEdit *>()) {
        if (edit->accessibleName() == "Colour as text")
            return *edit;
    }
    qFatal("no text field");
}

QString tst_ColorEditor::message() const
{
    for (const QLabel *label : m_editor->findChildren<QLabel *>()) {
        if (label->objectName() == "message")
            return label->text();
    }
    return QString();
}

namespace {

/// Types a number over what is there.
void type(QDoubleSpinBox &box, const QString &number)
{
    box.setFocus();
    box.selectAll();
    QTest::keyClicks(&box, number);
    QTest::keyClick(&box, Qt::Key_Return);
}

} // namespace

void tst_ColorEditor::showsAColorInAllForms()
{
    m_editor->setColor(TrelColor("#ff8000"));
    turnTo(ColorForm::Rgb);
    QCOMPARE(number("Red").value(), 255.0);
    QCOMPARE(number("Green").value(), 128.0);
    QCOMPARE(number("Blue").value(), 0.0);
    turnTo(ColorForm::Hsv);
    QCOMPARE(number("Hue").value(), 30.1);
    QCOMPARE(number("Saturation").value(), 100.0);
    turnTo(ColorForm::Yxy);
    const TrelColor yxy = TrelColor("#ff8000").toYxy();
    QVERIFY(qAbs(number("x").value() - yxy.getx()) < 0.0001);
    QVERIFY(qAbs(number("y").value() - yxy.gety()) < 0.0001);
    turnTo(ColorForm::Levels);
    QCOMPARE(number("Red").value(), 100.0);
    QCOMPARE(text().text(), QString("#ff8000"));
    QCOMPARE(int(m_spy->size()), 0);
}

void tst_ColorEditor::numbersAreTyped_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("value");
    QTest::newRow("red") << int(ColorForm::Rgb) << "Red"
                         << "128"
                         << "aRgb;1;0;#ffff8080ffffffff";
    QTest::newRow("value") << int(ColorForm::Hsv) << "Value"
                           << "50"
                           << "aRgb;1;0;#ffff800080008000";
    QTest::newRow("x") << int(ColorForm::Yxy) << "x"
                       << "0.4"
                       << "aYxy;1;0;65535;1.000000;0.400000;";
    QTest::newRow("luminance") << int(ColorForm::Yxy) << "Luminance Y"
                               << "25"
                               << "aYxy;1;0;65535;0.250000;";
    QTest::newRow("temperature") << int(ColorForm::White) << "Temperature"
                                 << "3200"
                                 << "aYxy;1;0;65535;1.000000;0.4";
    QTest::newRow("level") << int(ColorForm::Levels) << "Green"
                           << "50"
                           << "aNchannel;1;0;65535;65535;32768;65535;";
}

void tst_ColorEditor::numbersAreTyped()
{
    QFETCH(int, kind);
    QFETCH(QString, name);
    QFETCH(QString, number);
    QFETCH(QString, value);
    turnTo(ColorForm::Kind(kind));
    type(this->number(name), number);
    QVERIFY(!m_spy->isEmpty());
    QVERIFY2(m_editor->color().aName().startsWith(value), qPrintable(m_editor->color().aName()));
    QCOMPARE(qvariant_cast<TrelColor>(m_spy->last().first()).aName(), m_editor->color().aName());
    QVERIFY(qAbs(this->number(name).value() - number.toDouble()) < 1e-9);
}

void tst_ColorEditor::slidersAreDragged()
{
    turnTo(ColorForm::Rgb);
    GradientSlider &green = slider("Green");
    const int middle = green.height() / 2;
    QTest::mousePress(&green, Qt::LeftButton, {}, QPoint(green.width() - 6, middle));
    for (int x = green.width() - 10; x > 0; x -= 20)
        PaneTest::dragTo(green, QPoint(x, middle));
    QTest::mouseRelease(&green, Qt::LeftButton, {}, QPoint(1, middle));
    QVERIFY2(m_spy->size() > 4, "the colour follows while the slider moves");
    QCOMPARE(m_editor->color().green8(), int(number("Green").value()));
    QVERIFY(m_editor->color().green8() < 30);
    QCOMPARE(m_editor->color().red8(), 255);
}

void tst_ColorEditor::slidersByKeyboard()
{
    turnTo(ColorForm::Hsv);
    slider("Saturation").setFocus();
    QTest::keyClick(&slider("Saturation"), Qt::Key_End);
    QCOMPARE(m_editor->color().name8(), QString("#ff0000"));
    slider("Hue").setFocus();
    QTest::keyClick(&slider("Hue"), Qt::Key_Right);
    QCOMPARE(number("Hue").value(), 1.0);
    QTest::keyClick(&slider("Hue"), Qt::Key_PageUp);
    QCOMPARE(number("Hue").value(), 37.0);
    QTest::keyClick(&slider("Hue"), Qt::Key_Home);
    QCOMPARE(number("Hue").value(), 0.0);
    QTest::keyClick(&slider("Hue"), Qt::Key_End);
    QVERIFY(m_editor->color().isValid());
    QCOMPARE(m_editor->color().name8(), QString("#ff0000"));
}

void tst_ColorEditor::textsAreTaken_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("value");
    QTest::newRow("name") << "tomato"
                          << "aRgb;1;0;#ffffffff63634747";
    QTest::newRow("hexadecimal") << "#102030"
                                 << "aRgb;1;0;#ffff101020203030";
    QTest::newRow("Yxy") << "aYxy;1;0;65535;0.5;0.3127;0.329"
                         << "aYxy;1;0;65535;0.500000;0.312700;0.329000";
    QTest::newRow("levels") << "aNchannel;6;5;65535;100;200;300;400;1"
                            << "aNchannel;6;5;65535;100;200;300;400;1";
}

void tst_ColorEditor::textsAreTaken()
{
    QFETCH(QString, text);
    this->text().setFocus();
    this->text().selectAll();
    QTest::keyClicks(&this->text(), text);
    QTEST(m_editor->color().aName(), "value");
    QCOMPARE(this->text().text(), text);
    QVERIFY(!m_spy->isEmpty());
}

void tst_ColorEditor::badTextsAreExplained()
{
    text().setFocus();
    text().selectAll();
    QTest::keyClicks(&text(), "reddish");
    QCOMPARE(m_editor->color().name8(), QString("#ff0000")); // on the way
    QCOMPARE(message(), QString("No colour is called “reddish”."));
    QTest::keyClick(&text(), Qt::Key_Return);
    QCOMPARE(text().text(), QString("reddish"));
    m_editor->findChild<QTabWidget *>()->setFocus();
    QTRY_COMPARE(text().text(), QString("#ff0000"));
    QVERIFY(message().contains("can give"));
}

void tst_ColorEditor::greyKeepsItsHue()
{
    turnTo(ColorForm::Hsv);
    type(number("Saturation"), "100");
    type(number("Hue"), "200");
    const QString blue = m_editor->color().name8();
    type(number("Saturation"), "0");
    QCOMPARE(number("Hue").value(), 200.0);
    type(number("Saturation"), "100");
    QCOMPARE(m_editor->color().name8(), blue);
    type(number("Saturation"), "0");
    turnTo(ColorForm::Rgb);
    type(number("Red"), "254"); // now all is seen through RGB, as a cyan
    type(number("Red"), "255");
    turnTo(ColorForm::Hsv);
    type(number("Value"), "0");
    type(number("Value"), "100");
    QCOMPARE(number("Hue").value(), 180.0);
    type(number("Saturation"), "100");
    QCOMPARE(m_editor->color().name8(), QString("#00ffff"));
}

void tst_ColorEditor::whiteKeepsItsNumbers()
{
    turnTo(ColorForm::White);
    type(number("Temperature"), "3200");
    type(number("Tint"), "5000");
    QCOMPARE(number("Temperature").value(), 3200.0);
    QCOMPARE(number("Tint").value(), 5000.0);
    type(number("Luminance"), "0");
    type(number("Luminance"), "50");
    QCOMPARE(number("Temperature").value(), 3200.0);
    const QString warm = m_editor->color().aName();
    m_editor->setColor(TrelColor(warm)); // what a host does that listens and tells
    QCOMPARE(number("Tint").value(), 5000.0);
    m_editor->setColor(TrelColor("black"));
    QCOMPARE(number("Temperature").value(), 3200.0);
    QCOMPARE(number("Luminance").value(), 0.0);
}

void tst_ColorEditor::alphaStays()
{
    m_editor->setColor(TrelColor("#80ff0000"));
    for (const ColorForm::Kind kind : ColorForm::KINDS) {
        turnTo(kind);
        for (GradientSlider *each : m_editor->findChildren<GradientSlider *>()) {
            if (each->isVisible()) {
                each->setFocus();
                QTest::keyClick(each, Qt::Key_Home);
                QTest::keyClick(each, Qt::Key_PageUp);
                break;
            }
        }
        QCOMPARE(m_editor->color().alpha8(), 0x80);
    }
    QVERIFY(m_spy->size() >= 5);
}

void tst_ColorEditor::colorsThatAreNotWhite()
{
    turnTo(ColorForm::White);
    m_editor->setColor(TrelColor("#00ff00"));
    QLabel *note = nullptr;
    for (QLabel *label : m_editor->findChildren<QLabel *>()) {
        if (label->isVisible() && label->text().startsWith("The colour is not white"))
            note = label;
    }
    QVERIFY(note);
    type(number("Temperature"), "4000");
    QVERIFY(!note->isVisible());
    QCOMPARE(m_editor->color().spec(), TrelColor::Yxy);
}

void tst_ColorEditor::channelsFollowTheProfile()
{
    turnTo(ColorForm::Levels);
    m_editor->setProfile(ColorUtils::WASHLINE_PZ6_RGBA);
    QCoreApplication::processEvents(); // which shows the new rows
    type(number("Amber"), "40");
    QVERIFY(m_editor->color().aName().startsWith("aNchannel;6;5;65535;"));
    QCOMPARE(ColorForm(ColorForm::Levels, ColorUtils::WASHLINE_PZ6_RGBA).values(m_editor->color(), {}).at(3), 40.0);
    m_editor->setProfile(ColorUtils::GENERIC_SINGLE_CHANNEL);
    QCoreApplication::processEvents(); // which shows the new rows
    QVERIFY(number("Level").isVisible());
    m_editor->setProfile(ColorUtils::HuelockProfileID(42));
    QCoreApplication::processEvents(); // which shows the new rows
    QVERIFY(number("Blue").isVisible());
    for (const ColorUtils::HuelockProfileID profile : ColorUtils::huelockProfileIDList(true)) {
        m_editor->setProfile(profile);
        QCoreApplication::processEvents(); // which shows the new rows
        const int channels =
            ColorUtils::configChannelCount(ColorUtils::nChannelConfigurationForHuelockProfileID(profile));
        int visible = 0;
        for (const GradientSlider *each : m_editor->findChildren<GradientSlider *>())
            visible += each->isVisible() ? 1 : 0;
        QCOMPARE(visible, channels);
    }
}

void tst_ColorEditor::gamutIsShown()
{
    m_editor->setProfile(ColorUtils::WASHLINE_PZ6_RGBW);
    m_editor->setColor(TrelColor("aYxy;1;0;65535;1;0.3127;0.329"));
    QCOMPARE(message(), QString("WashLine PZ6 RGBW can give this colour."));
    m_editor->setColor(TrelColor("aYxy;1;0;65535;1;0.05;0.6"));
    QVERIFY2(message().startsWith("WashLine PZ6 RGBW cannot give this colour. It gives x 0."), qPrintable(message()));
    const ColorPreview *preview = m_editor->findChild<ColorPreview *>();
    QVERIFY(preview->accessibleDescription().contains("given as"));
    const QImage image = const_cast<ColorPreview *>(preview)->grab().toImage();
    const int middle = image.height() / 2;
    QVERIFY(image.pixel(image.width() / 4, middle) != image.pixel(image.width() * 3 / 4, middle));
}

void tst_ColorEditor::dropsAreTaken()
{
    QMimeData data;
    data.setText("#102030");
    QVERIFY(PaneTest::drop(*m_editor, QPoint(5, 5), data));
    QCOMPARE(m_editor->color().name8(), QString("#102030"));
    QCOMPARE(int(m_spy->size()), 1);
    data.setText("words");
    QVERIFY(!PaneTest::drop(*m_editor, QPoint(5, 5), data));
    QCOMPARE(message(), QString("There is no colour in it."));
    QCOMPARE(int(m_spy->size()), 1);
    for (const QLineEdit *field : m_editor->findChildren<QLineEdit *>()) {
        if (!field->isVisible())
            continue;
        m_editor->setColor(TrelColor(Qt::white));
        data.setText("#405060");
        QVERIFY(PaneTest::drop(*m_editor, field->mapTo(m_editor.get(), field->rect().center()), data));
        QCOMPARE(m_editor->color().name8(), QString("#405060"));
    }
}

void tst_ColorEditor::swatchIsDragged()
{
    m_editor->setColor(TrelColor("aYxy;1;0;65535;0.5;0.3127;0.329"));
    auto *preview = m_editor->findChild<ColorPreview *>();
    PaneTest::DragWatch watch(*preview);
    QTest::mousePress(preview, Qt::LeftButton, {}, QPoint(10, 10));
    PaneTest::dragTo(*preview, QPoint(11, 10));
    QVERIFY2(!watch.drag(), "a click may tremble");
    PaneTest::dragTo(*preview, QPoint(10 + QApplication::startDragDistance(), 10));
    QVERIFY(watch.drag());
    const QVector<NamedColor> colors = ColorMime::colorsOf(watch.drag()->mimeData());
    QCOMPARE(int(colors.size()), 1);
    QCOMPARE(colors.first().color.aName(), m_editor->color().aName());
    QVERIFY(watch.drag()->mimeData()->hasColor());
}

void tst_ColorEditor::goesWhileItIsTypedInto()
{
    turnTo(ColorForm::Levels);
    number("Red").setFocus();
    number("Red").selectAll();
    QTest::keyClicks(&number("Red"), "1");
    m_editor->setProfile(ColorUtils::WASHLINE_PZ6_RGBA);
    QCoreApplication::processEvents();
    QCOMPARE(int(m_spy->size()), 0);
    number("Amber").setFocus();
    QTest::keyClicks(&number("Amber"), "1");
    m_editor.reset();
    QCOMPARE(int(m_spy->size()), 0);

    m_editor = std::make_unique<ColorEditor>();
    QVERIFY(PaneTest::present(*m_editor, QSize(384, 360)));
    text().setFocus();
    QTest::keyClicks(&text(), "reddish");
    m_editor.reset();
}

void tst_ColorEditor::settingDoesNotEmit()
{
    for (const char *value : {"red", "aYxy;1;0;65535;0.5;0.3127;0.329", "aNchannel;6;5;65535;100;200;300;400;1"}) {
        m_editor->setColor(TrelColor(value));
        QCOMPARE(m_editor->color().aName(), TrelColor(value).aName());
    }
    m_editor->setProfile(ColorUtils::WASHLINE_PZ6_RGBA);
    QCOMPARE(int(m_spy->size()), 0);
}

void tst_ColorEditor::unusableColorsAreIgnored()
{
    m_editor->setColor(TrelColor("red"));
    m_editor->setColor(TrelColor());
    TrelColor bright;
    bright.setYxy16(9, 0.3, 0.3);
    m_editor->setColor(bright);
    QCOMPARE(m_editor->color().name8(), QString("#ff0000"));
}

void tst_ColorEditor::everythingHasAName()
{
    for (const ColorForm::Kind kind : ColorForm::KINDS) {
        turnTo(kind);
        for (const QWidget *widget : m_editor->findChildren<QWidget *>()) {
            const bool isControl =
                qobject_cast<const QDoubleSpinBox *>(widget) || qobject_cast<const GradientSlider *>(widget);
            if (isControl)
                QVERIFY(!widget->accessibleName().isEmpty());
        }
    }
    QVERIFY(!text().accessibleName().isEmpty());
}

void tst_ColorEditor::pictures()
{
    m_editor->setProfile(ColorUtils::WASHLINE_PZ6_RGBW);
    QCoreApplication::processEvents();
    m_editor->setColor(TrelColor("aYxy;1;0;65535;0.8;0.42;0.48"));
    const char *const names[] = {"rgb", "hsv", "yxy", "white", "levels"};
    for (const ColorForm::Kind kind : ColorForm::KINDS) {
        turnTo(kind);
        QVERIFY(PaneTest::takePictures(*m_editor, QString("editor-") + names[kind]));
    }
    m_editor->setProfile(ColorUtils::TESSEL_COVELINE);
    QCoreApplication::processEvents();
    m_editor->setColor(TrelColor("aYxy;1;0;65535;0.8;0.05;0.6"));
    m_editor->resize(m_editor->minimumSizeHint());
    QVERIFY(PaneTest::takePictures(*m_editor, "editor-narrow"));
    m_editor->resize(700, 420);
    QVERIFY(PaneTest::takePictures(*m_editor, "editor-wide"));
}

PANE_TEST_MAIN(tst_ColorEditor)
#include "tst_ColorEditor.moc"
