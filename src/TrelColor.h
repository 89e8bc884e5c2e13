#pragma once

#include "ColorUtils.h"

#include <QColor>
#include <QString>
#include <QVector>

#include <array>

class QDataStream;
class QDebug;
class QLinearGradient;
class QMimeData;

/// MIME type of a colour's value string.
inline constexpr char TRELCOLOR_MIME_TYPE[] = "data/x-trelcolor";

/// A colour: RGB, HSV, CIE Yxy or the channel levels of a fixture, with alpha, channel configuration and
/// calibration profile. A small value to copy freely; nothing here throws.
///
/// Every component is an unsigned 32-bit word of full scale 0xFFFFFFFF (0xFFFFFFFF is opaque), read and written
/// in three resolutions by suffix: `…8` 0..255, `…16` 0..65535, `…F` 0.0..1.0. Hue counts hundredths of a
/// degree; at 8 and 16 bits it is given in whole degrees 0..359, as a real 0.0..1.0 for the full turn, and −1
/// (−1.0) stands for an achromatic colour. Y, x and y are doubles at every resolution.
///
/// Range errors: whole-colour setters and factories of RGB and HSV colours, and fromxyY(), print a qWarning and
/// give an #Invalid colour; all other setters invalidate without a message, but for setAlpha8() (ODD-11). NaN is
/// out of range for the former and passes the latter (ODD-10).
class TREL_EXPORT TrelColor
{
public:
    /// The form of a colour. A stream may store a value outside the list; such a colour reads as black.
    enum Spec : int {
        Invalid = 0, ///< no colour
        Rgb = 1,     ///< red, green, blue
        Hsv = 2,     ///< hue, saturation, value
        Yxy = 3,     ///< CIE 1931 luminance Y and chromaticity x, y
        Nchannel = 4 ///< one level for each fixture channel
    };

    /// What the levels of an #Nchannel colour were rendered from.
    enum NChannelRenderType : int {
        NChannelRenderRgb = 0, ///< an RGB or HSV colour
        NChannelRenderYxy = 1  ///< a Yxy colour; such a colour is mixed in Yxy
    };

    /// As an argument of a conversion: the colour's own profile.
    static constexpr ColorUtils::HuelockProfileID OWN_PROFILE = ColorUtils::HuelockProfileID(-1);

    /// As an argument of a conversion: the default on-board curve of the profile.
    static constexpr int DEFAULT_CURVE = -1;

    /// \name Construction
    /// Configuration CONFIG_RGB and profile GENERIC_RGB unless said otherwise.
    /// @{

    /// An #Invalid colour: alpha 0xFFFFFFFF, components zero.
    TrelColor();

    /// #Rgb from 0xRRGGBB, opaque: a byte above them is ignored (ODD-01).
    TrelColor(unsigned int rgb);

    /// A Qt global colour, its alpha included; color0 is white and color1 black, whatever their names suggest
    /// (ODD-02). #Invalid for a value outside Qt's list.
    TrelColor(Qt::GlobalColor color);

    /// The 8-bit components of \a color.
    TrelColor(const QColor &color);

    /// 16-bit components, as setRgb16().
    TrelColor(unsigned int r, unsigned int g, unsigned int b, unsigned int a);

    /// #Yxy with Y = 1 and the given chromaticity, not range-checked.
    TrelColor(double x, double y);

    /// As setNamedColor().
    TrelColor(const QString &name);
    /// As setNamedColor() on UTF-8 text; null is empty text.
    TrelColor(const char *name);

    /// As the constructor from a QColor.
    TrelColor &operator=(const QColor &color);
    /// As the constructor from a global colour.
    TrelColor &operator=(Qt::GlobalColor color);

    /// @}
    /// \name Factories
    /// Colours with the given profile and configuration CONFIG_RGB; an #Invalid colour and a warning when an
    /// argument is out of range. The hue ranges of factories and setters differ (ODD-03).
    /// @{

    /// Components 0..255.
    static TrelColor fromRgb8(int r, int g, int b, int a = 255,
                              ColorUtils::HuelockProfileID profile = ColorUtils::GENERIC_RGB);
    /// Components 0..65535.
    static TrelColor fromRgb16(unsigned int r, unsigned int g, unsigned int b, unsigned int a = 65535,
                               ColorUtils::HuelockProfileID profile = ColorUtils::GENERIC_RGB);
    /// Components 0.0..1.0.
    static TrelColor fromRgbF(double r, double g, double b, double a = 1.0,
                              ColorUtils::HuelockProfileID profile = ColorUtils::GENERIC_RGB);
    /// The bytes of 0xAARRGGBB.
    static TrelColor fromRgba(unsigned int argb);
    /// The bytes of 0xRRGGBB, opaque.
    static TrelColor fromRgb(unsigned int rgb);
    /// Hue −1..359 degrees, the others 0..255.
    static TrelColor fromHsv8(int h, int s, int v, int a = 255,
                              ColorUtils::HuelockProfileID profile = ColorUtils::GENERIC_RGB);
    /// Hue −1..359 degrees, the others 0..65535. Warns with the text of fromHsv8() (ODD-12).
    static TrelColor fromHsv16(int h, unsigned int s, unsigned int v, unsigned int a = 65535,
                               ColorUtils::HuelockProfileID profile = ColorUtils::GENERIC_RGB);
    /// Hue −1.0 or 0.0..1.0, the others 0.0..1.0. A hue of −1.0 is stored as 0x7FFFFFFF (ODD-04).
    static TrelColor fromHsvF(double h, double s, double v, double a = 1.0,
                              ColorUtils::HuelockProfileID profile = ColorUtils::GENERIC_RGB);
    /// Each 0.0..1.0; opaque.
    static TrelColor fromxyY(double x, double y, double Y,
                             ColorUtils::HuelockProfileID profile = ColorUtils::GENERIC_RGB);

    /// As setNChannelF() on a default colour.
    static TrelColor fromNChannelF(const QVector<double> &levels, ColorUtils::ChannelConfiguration configuration,
                                   ColorUtils::HuelockProfileID profile);
    /// As setNChannel16() on a default colour.
    static TrelColor fromNChannel16(const QVector<unsigned int> &levels, ColorUtils::ChannelConfiguration configuration,
                                    ColorUtils::HuelockProfileID profile);
    /// As setNChannel8() on a default colour.
    static TrelColor fromNChannel8(const QVector<int> &levels, ColorUtils::ChannelConfiguration configuration,
                                   ColorUtils::HuelockProfileID profile);

    /// @}
    /// \name Kind, configuration, profile
    /// @{

    /// The form that the colour has now.
    Spec spec() const;
    /// Whether the form is any other than #Invalid.
    bool isValid() const;
    /// Back to the state of a default-constructed colour.
    void invalidate();

    /// The fixture channel configuration that the colour belongs to.
    ColorUtils::ChannelConfiguration getChannelConfiguration() const;
    /// The calibration profile that the colour belongs to.
    ColorUtils::HuelockProfileID getHuelockProfileID() const;
    /// Stores the profile; converts nothing.
    void setHuelockProfileID(ColorUtils::HuelockProfileID profile);

    /// The first component word as a render type; meaningful for #Nchannel.
    NChannelRenderType getNChannelRenderType() const;
    /// Stores \a type into the first component word, whatever the form (ODD-16).
    void setNChannelRenderType(NChannelRenderType type);

    /// @}
    /// \name Alpha
    /// Read in every form; a setter's argument out of range invalidates the colour.
    /// @{

    /// Alpha, 0..255.
    int alpha8() const;
    /// Alpha, 0..65535.
    unsigned int alpha16() const;
    /// Alpha, 0.0..1.0.
    double alphaF() const;
    /// Prints a warning before it invalidates.
    void setAlpha8(int alpha);
    /// 0..65535; otherwise the colour becomes #Invalid.
    void setAlpha16(unsigned int alpha);
    /// 0.0..1.0; otherwise the colour becomes #Invalid.
    void setAlphaF(double alpha);
    /// @}

    /// \name RGB
    /// Getters of another form than #Rgb read toRgb16() with gamut clamping. A whole-colour setter gives an
    /// #Rgb colour with configuration CONFIG_RGB and the given profile. A setter of one component makes the
    /// colour #Rgb, keeping alpha and profile; out of range it invalidates without a message.
    /// @{

    /// Red, 0..255.
    int red8() const;
    /// Green, 0..255.
    int green8() const;
    /// Blue, 0..255.
    int blue8() const;
    /// Red, 0..65535.
    unsigned int red16() const;
    /// Green, 0..65535.
    unsigned int green16() const;
    /// Blue, 0..65535.
    unsigned int blue16() const;
    /// Red, 0.0..1.0.
    double redF() const;
    /// Green, 0.0..1.0.
    double greenF() const;
    /// Blue, 0.0..1.0.
    double blueF() const;
    /// Does nothing unless r, g and b are all given; \a a may be null.
    void getRgb16(unsigned int *r, unsigned int *g, unsigned int *b, unsigned int *a = nullptr) const;
    /// The same as reals.
    void getRgbF(double *r, double *g, double *b, double *a = nullptr) const;
    /// 0xAARRGGBB.
    unsigned int rgba() const;
    /// 0xFFRRGGBB.
    unsigned int rgb() const;
    /// rgba() of \a color.
    static unsigned int toRgb(const TrelColor &color);

    /// Red, 0..255.
    void setRed8(int red);
    /// Green, 0..255.
    void setGreen8(int green);
    /// Blue, 0..255.
    void setBlue8(int blue);
    /// Red, 0..65535.
    void setRed16(unsigned int red);
    /// Green, 0..65535.
    void setGreen16(unsigned int green);
    /// Blue, 0..65535.
    void setBlue16(unsigned int blue);
    /// Red, 0.0..1.0.
    void setRedF(double red);
    /// Green, 0.0..1.0.
    void setGreenF(double green);
    /// Blue, 0.0..1.0.
    void setBlueF(double blue);
    /// Components 0..255.
    void setRgb8(int r, int g, int b, int a = 255, ColorUtils::HuelockProfileID profile = ColorUtils::GENERIC_RGB);
    /// Components 0..65535.
    void setRgb16(unsigned int r, unsigned int g, unsigned int b, unsigned int a = 65535,
                  ColorUtils::HuelockProfileID profile = ColorUtils::GENERIC_RGB);
    /// Three components 0..65535, opaque; null counts as out of range.
    void setRgb16(const unsigned int *rgb, ColorUtils::HuelockProfileID profile = ColorUtils::GENERIC_RGB);
    /// Components 0.0..1.0.
    void setRgbF(double r, double g, double b, double a = 1.0,
                 ColorUtils::HuelockProfileID profile = ColorUtils::GENERIC_RGB);
    /// @}

    /// \name HSV
    /// Getters of a colour in another form than #Hsv read toHsv16().
    /// @{

    /// Whole degrees, rounded, at most 359 (ODD-07); −1 for an achromatic colour.
    int hue8() const;
    /// HSV saturation, 0..255.
    int saturation8() const;
    /// HSV value, 0..255.
    int value8() const;
    /// The same as hue8().
    int hue16() const;
    /// HSV saturation, 0..65535.
    unsigned int saturation16() const;
    /// HSV value, 0..65535.
    unsigned int value16() const;
    /// Share of a turn; −1.0 for an achromatic colour.
    double hueF() const;
    /// HSV saturation, 0.0..1.0.
    double saturationF() const;
    /// HSV value, 0.0..1.0.
    double valueF() const;
    /// Does nothing unless h, s and v are all given; \a a may be null. The hue is truncated (ODD-07).
    void getHsv16(int *h, unsigned int *s, unsigned int *v, unsigned int *a = nullptr) const;
    /// Does nothing unless h, s and v are all given; \a a may be null.
    void getHsvF(double *h, double *s, double *v, double *a = nullptr) const;

    /// Hue 0..360 degrees, 360 stored as 0, the others 0..255 (ODD-03).
    void setHsv8(int h, int s, int v, int a = 255, ColorUtils::HuelockProfileID profile = ColorUtils::GENERIC_RGB);
    /// Hue at most 65535 degrees, modulo 360, a negative one stays negative; the others 0..65535 (ODD-03).
    void setHsv16(int h, unsigned int s, unsigned int v, unsigned int a = 65535,
                  ColorUtils::HuelockProfileID profile = ColorUtils::GENERIC_RGB);
    /// Hue −1.0 or 0.0..1.0, the others 0.0..1.0. A hue of −1.0 is stored as 0x7FFFFFFF (ODD-04).
    void setHsvF(double h, double s, double v, double a = 1.0,
                 ColorUtils::HuelockProfileID profile = ColorUtils::GENERIC_RGB);
    /// @}

    /// \name Yxy
    /// Getters of a colour that is neither #Yxy nor #Invalid read toYxy().
    /// @{

    /// Luminance, 0..1.
    double getY() const;
    /// Chromaticity x.
    double getx() const;
    /// Chromaticity y.
    double gety() const;
    /// Does nothing unless Y, x and y are all given; alpha may be null.
    void getYxy16(double *Y, double *x, double *y, unsigned int *alpha = nullptr) const;
    /// The same with a real alpha.
    void getYxyF(double *Y, double *x, double *y, double *alpha = nullptr) const;
    /// The same with an 8-bit alpha.
    void getYxy8(double *Y, double *x, double *y, int *alpha = nullptr) const;

    /// 0.0..1.0, otherwise the colour becomes #Invalid. A colour in another form becomes #Yxy and loses the
    /// low 16 bits of its alpha (ODD-14).
    void setY(double Y);
    /// Chromaticity x, under the same conditions.
    void setx(double x);
    /// Chromaticity y, under the same conditions.
    void sety(double y);
    /// #Yxy with the given profile. Y, x and y are not range-checked and the configuration is kept. An alpha
    /// out of range leaves an #Invalid colour that holds Y, x, y and the profile all the same (ODD-13).
    void setYxy16(double Y, double x, double y, unsigned int alpha = 65535,
                  ColorUtils::HuelockProfileID profile = ColorUtils::GENERIC_RGB);
    /// The same with alpha 0.0..1.0.
    void setYxyF(double Y, double x, double y, double alpha = 1.0,
                 ColorUtils::HuelockProfileID profile = ColorUtils::GENERIC_RGB);
    /// The same with alpha 0..255.
    void setYxy8(double Y, double x, double y, int alpha = 255,
                 ColorUtils::HuelockProfileID profile = ColorUtils::GENERIC_RGB);
    /// @}

    /// \name Channel levels
    /// Level vectors carry alpha as element 0, followed by one element for each channel.
    /// @{

    /// The stored levels in any form: a colour that is not #Nchannel gives its alpha only. \a configuration
    /// and \a profile are filled when not null.
    void getNChannelF(QVector<double> *levels, ColorUtils::ChannelConfiguration *configuration = nullptr,
                      ColorUtils::HuelockProfileID *profile = nullptr) const;
    /// The same at 16 bits.
    void getNChannel16(QVector<unsigned int> *levels, ColorUtils::ChannelConfiguration *configuration = nullptr,
                       ColorUtils::HuelockProfileID *profile = nullptr) const;
    /// The same at 8 bits.
    void getNChannel8(QVector<int> *levels, ColorUtils::ChannelConfiguration *configuration = nullptr,
                      ColorUtils::HuelockProfileID *profile = nullptr) const;

    /// #Nchannel with the given levels, configuration and profile. Levels are not range-checked, the alpha is,
    /// but for the 8-bit form (ODD-15); out of range it leaves an #Invalid colour without levels that holds
    /// configuration and profile. The render type is not touched (ODD-16).
    /// Fatal: an empty vector ("index out of range").
    void setNChannelF(const QVector<double> &levels, ColorUtils::ChannelConfiguration configuration,
                      ColorUtils::HuelockProfileID profile);
    /// The same at 16 bits; the alpha at most 65535.
    void setNChannel16(const QVector<unsigned int> &levels, ColorUtils::ChannelConfiguration configuration,
                       ColorUtils::HuelockProfileID profile);
    /// The same at 8 bits; the alpha is not checked.
    void setNChannel8(const QVector<int> &levels, ColorUtils::ChannelConfiguration configuration,
                      ColorUtils::HuelockProfileID profile);
    /// @}

    /// \name QColor
    /// @{

    /// The 8-bit components of \a color.
    void setQColor(const QColor &color);
    /// The colour as 8-bit components; \a clampToGamut as in toRgb16(). Opaque black for an #Invalid colour.
    QColor getQColor(bool clampToGamut) const;
    /// @}

    /// \name Text and stream forms
    /// docs/formats.md has the grammar.
    /// @{

    /// The value string, by which colours are stored; empty for an #Invalid colour.
    QString aName() const;
    /// "#rrrrggggbbbb".
    QString name() const;
    /// "#rrggbb".
    QString name8() const;
    /// Alpha and channel levels as 8-bit decimals joined by ",".
    QString nameFull8() const;
    /// Reads a value string, a hexadecimal name or a colour name of Qt's. Text that is none of them leaves
    /// an #Invalid colour. Configuration and profile of an RGB colour are not restored (ODD-21), nor is the
    /// profile of a Yxy colour (ODD-22).
    void setNamedColor(const QString &name);
    /// New data, owned by the caller, with aName() under the MIME type TRELCOLOR_MIME_TYPE.
    QMimeData *mimeData() const;
    /// @}

    /// \name Conversion
    /// @{

    /// The colour as #Rgb with its own alpha and profile. A #Yxy or #Nchannel colour is always rendered for
    /// GENERIC_RGB, whatever profile it carries (ODD-08); \a clampToGamut first moves a chromaticity outside
    /// that gamut to its nearest point.
    TrelColor toRgb16(bool clampToGamut) const;

    /// The colour as #Hsv.
    TrelColor toHsv16() const;

    /// The colour as #Yxy, seen as the output of a fixture of \a profile. The result carries the colour's own
    /// profile all the same (ODD-17).
    /// \param configuration CONFIG_UNKNOWN stands for the colour's own.
    TrelColor toYxy(ColorUtils::ChannelConfiguration configuration = ColorUtils::CONFIG_UNKNOWN,
                    ColorUtils::HuelockProfileID profile = OWN_PROFILE, int curveType = DEFAULT_CURVE) const;

    /// The colour as #Nchannel levels for \a configuration and \a profile, clamped to the gamut.
    /// #OWN_PROFILE is handed to the solver and stored as it is, −1 (ODD-18).
    /// Fatal: ColorUtils::convertYxyToNChannel()'s.
    TrelColor toNChannel16(ColorUtils::ChannelConfiguration configuration, ColorUtils::HuelockProfileID profile,
                           int curveType = DEFAULT_CURVE) const;

    /// The conversion to \a spec; a copy where the colour has that form (but for #Nchannel), an #Invalid
    /// colour for any other target.
    TrelColor convertTo(Spec spec, ColorUtils::ChannelConfiguration configuration,
                        ColorUtils::HuelockProfileID profile) const;
    /// @}

    /// \name Blackness, equality
    /// @{

    /// Whether no light is left: all of RGB, the HSV value, Y or all levels are zero. Alpha plays no part;
    /// an #Invalid colour is not black.
    bool isBlack() const;
    /// Whether every channel level is zero; true without levels.
    bool allNChannelsBlack() const;

    /// Same form, alpha, components, profile and configuration. Two #Invalid colours are unequal (ODD-05);
    /// #Hsv colours are compared by hue alone (ODD-06).
    bool operator==(const TrelColor &other) const;
    /// The negation of operator==().
    bool operator!=(const TrelColor &other) const;
    /// @}

    /// \name Mixing
    /// @{

    /// Components times alpha, for #Yxy also x and y (ODD-09); the alpha stays.
    static TrelColor premultiply(const TrelColor &color);
    /// The reverse; a colour with alpha 0 as it is. Results out of range warn and give an #Invalid colour.
    static TrelColor unpremultiply(const TrelColor &color);

    /// \a a over \a b: in Yxy when one of them is #Yxy or was rendered from it, otherwise in RGB.
    static TrelColor mix(const TrelColor &a, const TrelColor &b);
    /// \a a over \a b in RGB, with profile GENERIC_RGB.
    static TrelColor mixColorsRGB(const TrelColor &a, const TrelColor &b);
    /// mixColorsRGB() converted to Yxy, with configuration and profile of \a a.
    static TrelColor mixColorsxy(const TrelColor &a, const TrelColor &b);

    /// From \a b (\a progress 0) to \a a (1). Fatal: a progress outside 0..1 or NaN ("progress >= 0.0",
    /// "progress <= 1.0"). Writes debug lines at both ends and when it mixes in Yxy (ODD-19).
    static TrelColor blend(const TrelColor &a, const TrelColor &b, double progress);

    /// The colour of \a gradient at \a position, blended between the stops at 8 bits. Outside the stops, also
    /// below the first, the last stop's colour (ODD-20).
    static TrelColor colorFromGradient(const QLinearGradient &gradient, double position);
    /// @}

private:
    friend TREL_EXPORT QDataStream &operator<<(QDataStream &stream, const TrelColor &color);
    friend TREL_EXPORT QDataStream &operator>>(QDataStream &stream, TrelColor &color);

    /// Places of the components in the shared storage, counted in words (Rgb, Hsv, Nchannel) …
    enum Word : unsigned int { FirstWord = 0, SecondWord = 1, ThirdWord = 2 };
    /// … or in doubles (Yxy).
    enum Real : int { YReal = 0, xReal = 1, yReal = 2 };

    double real(Real place) const;
    void setReal(Real place, double value);
    int storedHue() const;
    unsigned int rgbWord(Word place) const;
    unsigned int hsvWord(Word place) const;
    double yxyReal(Real place) const;
    bool isMixedInYxy() const;

    bool checkReal(double value);
    bool check8(int value);
    bool check16(unsigned int value);
    void refuse(const char *warning);

    void store(Spec spec, const std::array<unsigned int, 3> &words, unsigned int alpha,
               ColorUtils::HuelockProfileID profile);
    void beginYxy();
    void storeYxy(double Y, double x, double y, ColorUtils::HuelockProfileID profile);
    void storeLevels(QVector<unsigned int> levels, ColorUtils::ChannelConfiguration configuration,
                     ColorUtils::HuelockProfileID profile);
    void exportOrigin(ColorUtils::ChannelConfiguration *configuration, ColorUtils::HuelockProfileID *profile) const;
    void setComponent8(Word place, int value);
    void setComponent16(Word place, unsigned int value);
    void setComponentF(Word place, double value);
    void setYxyComponent(Real place, double value);

    TrelColor hsvFromRgb() const;
    TrelColor rgbFromHsv() const;
    void setValueString(QStringView text);
    void setPlainName(QStringView text);
    static TrelColor scaledByAlpha(const TrelColor &color, double (*scaled)(double value, double alpha));

    ColorUtils::ChannelConfiguration m_channelConfiguration;
    ColorUtils::HuelockProfileID m_profile;
    Spec m_spec;
    unsigned int m_alpha;
    std::array<unsigned int, 6> m_words; ///< one storage for all forms: three words, or three doubles over all six
    QVector<unsigned int> m_levels;      ///< channel levels, without alpha
};

/// Writes spec, alpha and the first three component words; only #TrelColor::Rgb, #TrelColor::Hsv and
/// #TrelColor::Invalid colours survive (ODD-24).
TREL_EXPORT QDataStream &operator<<(QDataStream &stream, const TrelColor &color);
/// Reads what operator<< writes and leaves the rest of \a color as it was. On a stream that ends early or had
/// failed before, \a color stays as it was.
TREL_EXPORT QDataStream &operator>>(QDataStream &stream, TrelColor &color);
/// For people; writes nothing for an #TrelColor::Nchannel colour (ODD-25).
TREL_EXPORT QDebug operator<<(QDebug debug, const TrelColor &color);

/// Reads "#" and 6, 8, 12 or 16 hexadecimal digits into \a argb as four 16-bit components (alpha, red, green,
/// blue). False only when \a s does not start with "#": a wrong digit or length gives components above 65535
/// (ODD-23). A null \a s is false.
TREL_EXPORT bool get_hex_rgb16(const char *s, unsigned int *argb);
/// The same for \a length characters; false above 17. Characters above U+00FF count as the end of the text.
TREL_EXPORT bool get_hex_rgb16(const QChar *s, int length, unsigned int *argb);
/// Value of a hexadecimal digit; −1 for any other character.
TREL_EXPORT int h2i(char digit);
