#pragma once

#include "TrelExport.h"

#include <QtContainerFwd>

class QPointF;
class QString;
class TrelColor;
class Tristimulus;

/// The shared vocabulary of the toolkit and its colour science.
///
/// The enumerations name fixtures, their emitters and the way in which control data reach them. Their
/// values are stored in colour texts and documents, so they never change; a value outside a list (−1, 42,
/// whatever a text says) may be stored and passed on, and every function states what it answers for one.
///
/// All functions are static. They belong to the GUI thread: those that need a registry create it on first
/// use without a lock.
class TREL_EXPORT ColorUtils
{
public:
    /// The emitter set of a fixture. Channels stand in the order of the letters of the name.
    /// Not numbered by channel count (ODD-26).
    enum ChannelConfiguration : int {
        CONFIG_UNKNOWN = 0,        ///< not a configuration: unset or unknown, no channels
        CONFIG_RGB = 1,            ///< 3 channels
        CONFIG_RGBAW = 2,          ///< 5 channels
        CONFIG_RGBW = 3,           ///< 4 channels
        CONFIG_SINGLE_CHANNEL = 4, ///< 1 channel
        CONFIG_RGBWW = 5,          ///< 5 channels
        CONFIG_RGBA = 6            ///< 4 channels
    };

    /// One calibrated fixture family. An identifier without a profile stands for #GENERIC_RGB.
    enum HuelockProfileID : int {
        GENERIC_RGB = 0,            ///< "Generic RGB", the fallback
        STRAND_BEAM_KVX = 1,        ///< "Strand/Beam KVX", RGBAW
        TESSEL_COVELINE = 2,        ///< "Tessel CoveLine", RGBWW
        GENERIC_RGBW = 3,           ///< "Generic RGBW", not calibrated
        GENERIC_SINGLE_CHANNEL = 4, ///< "Single Channel", not calibrated
        WASHLINE_PZ6_RGBA = 5,      ///< "WashLine PZ6 RGBA"
        WASHLINE_PZ6_RGBW = 6,      ///< "WashLine PZ6 RGBW"
        PIXELNODE_RGB_CLASS = 7,    ///< "PixelNode RGB"
        FLOODBAR_KQ2_RGBA = 8,      ///< "FloodBar KQ2 RGBA"
        FLOODBAR_KQ2_RGBW = 9       ///< "FloodBar KQ2 RGBW"
    };

    /// Whether colours are solved through the fixture's calibration.
    enum HueLockMode : int {
        HUELOCK_OFF = 0, ///< channels are driven without calibration
        HUELOCK_ON = 1   ///< colours are solved through the emitters' measured tristimulus values
    };

    /// How incoming control data map onto the fixture's channels; see IOModeFactory for the table.
    enum IOModeID : int {
        RGB_IN_OUT = 0,           ///< pass-through of RGB
        RGBA_IN_OUT = 1,          ///< pass-through of RGBA
        RGBW_IN_OUT = 2,          ///< pass-through of RGBW
        RGBAW_IN_OUT = 3,         ///< pass-through of RGBAW
        RGBWW_IN_OUT = 4,         ///< pass-through of RGBWW
        RGB_IN_RGBA_OUT = 5,      ///< RGB in, RGBA out
        RGB_IN_RGBW_OUT = 6,      ///< RGB in, RGBW out
        RGB_IN_RGBAW_OUT = 7,     ///< RGB in, RGBAW out
        RGB_IN_RGBWW_OUT = 8,     ///< RGB in, RGBWW out
        SINGLE_CHANNEL_IN_OUT = 9 ///< pass-through of one channel
    };

    /// The one object of this class, created on first call; it has no state.
    static ColorUtils *getInstance();

    /// \name Channel configurations and profile identifiers
    /// @{

    /// Number of channels of \a configuration; 0 for any value outside 1..6.
    static int configChannelCount(ChannelConfiguration configuration);

    /// Name of \a configuration, not translated; "Unknown" for any value outside 1..6.
    static QString nameForChannelConfiguration(ChannelConfiguration configuration);

    /// The profile identifiers 0..9 in ascending order, without #GENERIC_RGBW and #GENERIC_SINGLE_CHANNEL
    /// when \a includeGenericExtras is false. #GENERIC_RGB is always in the list.
    static QList<HuelockProfileID> huelockProfileIDList(bool includeGenericExtras);

    /// @}
    /// \name Questions about a fixture profile
    /// Each asks HuelockProfileFactory, so an identifier without a profile is answered as #GENERIC_RGB.
    /// @{

    /// Translated display name of the profile.
    static QString huelockProfileIDName(HuelockProfileID profile);

    /// The I/O modes that the profile supports, in display order.
    static QList<IOModeID> ioModesForHuelockProfileID(HuelockProfileID profile);

    /// The I/O mode that a new fixture of the family starts in.
    static IOModeID defaultIOModeIDForHuelockProfileID(HuelockProfileID profile);

    /// The emitter set of the profile.
    static ChannelConfiguration nChannelConfigurationForHuelockProfileID(HuelockProfileID profile);

    /// The curve type (CurveFactory) that fixtures of the family apply on board by default.
    static int defaultCurveTypeForHuelockProfileID(HuelockProfileID profile);

    /// Whether calibration is on by default in I/O mode \a ioMode (an #IOModeID as int); false for a mode
    /// that the profile does not support.
    static bool defaultHueLockEnabled(HuelockProfileID profile, int ioMode);

    /// Display names in the order of huelockProfileIDList(\a includeGenericExtras), made anew by each call.
    static QStringList huelockProfileIDNameList(bool includeGenericExtras);

    /// Display names by profile identifier, all ten. Filled by the first call and kept, also when the
    /// translation changes later in the run (ODD-29).
    static QMap<int, QString> huelockProfileIDNameMap();

    /// @}
    /// \name Dimming curves
    /// Levels are doubles from 0 to 1 (not clamped here); curve types are those of CurveFactory.
    /// @{

    /// Turns \a count levels into DMX bytes at \a out.
    ///
    /// \param resolution 1: one byte a channel; 2: two bytes a channel.
    /// \param out        count × resolution bytes of the caller's.
    /// \param mode       3: pre-compensation, the value that a fixture with on-board curve \a curveType
    ///                   turns back into the level; any other: the level through the software curve.
    ///
    /// The software path truncates level × 65535 at 16 bits, high byte first, and rounds level × 255 half
    /// away from zero at 8 bits; other resolutions write nothing. The pre-compensation path rounds to 16
    /// bits first (ODD-31); its byte order is exact for the first channel only (ODD-32). There, any
    /// resolution but 2 writes one byte a channel, and an unknown curve type leaves \a out untouched.
    /// Fatal: a level whose index lies beyond the curve's table ("index out of range").
    static void applyCurve(int count, int resolution, const double *levels, unsigned char *out, int curveType,
                           int mode);

    /// The same into \a count 16-bit words in the machine's byte order.
    static void applyCurve16(int count, const double *levels, unsigned short *out, int curveType, int mode);

    /// PWM values of \a count levels: level × 65535, rounded half up, low 16 bits. Nothing for a count below 1.
    static void nChannelFToPWM(const double *levels, unsigned short *out, int count);

    /// Solves a·x² + b·x + c = \a y for x, clamped to 0..\a max and rounded to a whole number.
    /// The first positive root counts, the larger one (for a positive \a a) first; without one, 0. The
    /// discriminant is computed in single precision, its root in double (ODD-34).
    static float quadraticSolver(float a, float b, float c, float y, float max);

    /// 16-bit DMX value that a fixture with the normal on-board curve turns back into PWM value \a p.
    static unsigned short pwm16ToMNormDNormRes16(unsigned short p);
    /// 8-bit DMX value for the normal on-board curve.
    static unsigned char pwm16ToMNormDNormRes8(unsigned short p);
    /// 16-bit DMX value for the tungsten on-board curve, at most 255 all the same (ODD-33).
    static unsigned short pwm16ToMNormDTungstenRes16(unsigned short p);
    /// 8-bit DMX value for the tungsten on-board curve.
    static unsigned char pwm16ToMNormDTungstenRes8(unsigned short p);
    /// 8-bit DMX value for the linear on-board curve: p / 257, rounded.
    static unsigned char pwm16ToMNormDLinearRes8(unsigned short p);

    /// pwm16ToMNormDNormRes16() of \a count values at \a in, into \a out; nothing for a count below 1.
    static void pwmToMNormDNormRes16(const unsigned short *in, unsigned short *out, int count);
    /// pwm16ToMNormDNormRes8() of \a count values; nothing for a count below 1.
    static void pwmToMNormDNormRes8(const unsigned short *in, unsigned char *out, int count);
    /// pwm16ToMNormDTungstenRes16() of \a count values; nothing for a count below 1.
    static void pwmToMNormDTungstenRes16(const unsigned short *in, unsigned short *out, int count);
    /// pwm16ToMNormDTungstenRes8() of \a count values; nothing for a count below 1.
    static void pwmToMNormDTungstenRes8(const unsigned short *in, unsigned char *out, int count);
    /// Copies \a count values: linear 16-bit DMX is the PWM value. Nothing for a count below 1.
    static void pwmToMNormDLinearRes16(const unsigned short *in, unsigned short *out, int count);
    /// pwm16ToMNormDLinearRes8() of \a count values; nothing for a count below 1.
    static void pwmToMNormDLinearRes8(const unsigned short *in, unsigned char *out, int count);

    /// The 8-bit DMX value x for which 0.9412·x² + 16.937·x = \a v (square-law inverse), truncated, at most 255.
    static unsigned char lut16BitToBit(unsigned short v);

    /// Dim ratio 0..1 of a fixture whose tungsten on-board curve receives the 16-bit value \a dmx.
    static double dmx16ToTungstenDimRatio(unsigned short dmx);

    /// Dim ratio 0..1 of a fixture whose square-law on-board curve receives the 16-bit value \a dmx.
    /// Full scale is 65516 (ODD-35).
    static double dmx16ToSquareLawDimRatio(unsigned short dmx);

    /// @}
    /// \name Yxy to channel levels
    /// @{

    /// The levels of a fixture's emitters that give chromaticity (x, y) at the highest reachable luminance,
    /// scaled by the wanted luminance.
    ///
    /// \param Yxy          luminance Y (0..1; above 1 the levels are scaled beyond 1) and CIE 1931 x, y.
    /// \param out          configChannelCount(\a configuration) levels.
    /// \param clampToGamut moves a chromaticity outside the profile's gamut triangle to its nearest point.
    ///
    /// All zeros when no mixture gives the chromaticity: outside the gamut, x = 0 or x + y = 1 (ODD-37), not
    /// a number, or fewer than two channels. The search tries every pair of emitters as the mixing pair
    /// with every on/off setting of the others, since an optimum of this linear programme has at most two
    /// levels strictly between 0 and 1.
    /// Fatal: calibration data with fewer channels than the configuration ("index out of range").
    static void convertYxyToNChannel(const double *Yxy, double *out, ChannelConfiguration configuration,
                                     HuelockProfileID profile, bool clampToGamut);

    /// Solves the two equations with the augmented rows \a m[0] and \a m[1] by Gauss-Jordan elimination
    /// without pivoting; a zero pivot gives infinities or NaN. Rows are double, multipliers are rounded to
    /// single precision (ODD-36).
    static void gaussianEliminationTwoByThree(const double m[2][3], double &a, double &b);

    /// True when every element lies in 0..1; a NaN does not. True for an empty vector.
    static bool validateDimmingRatio(QVector<double> levels);

    /// Chromaticity of \a XYZ: (largest of X, Y, Z; X / sum; Y / sum), the first deliberately not Y
    /// (ODD-38). All zeros when X, Y and Z are all at most 0.
    static void convertXYZtoYxy(const double XYZ[3], double Yxy[3]);

    /// Distance from \a p to the segment \a a – \a b; \a closest becomes the segment's nearest point.
    static double minDistance(QPointF a, QPointF b, QPointF p, QPointF &closest);

    /// Repeats 3 or 6 channels cyclically up to 5 or 10; any other length gives an empty list.
    static QList<unsigned char> expandFor5Channels(QList<unsigned char> channels);

    /// @}
    /// \name Colour to fixture output
    /// @{

    /// Luminance and chromaticity of \a color on a fixture with the emitters \a data.
    ///
    /// \param Yxy          receives Y, x, y. Y is the largest single channel ratio (ODD-39), not a sum.
    /// \param onboardCurve curve of the fixture: 1 square law, 2 tungsten, any other linear.
    ///
    /// Black gives (0, 0, 0). Channels beyond the calibration data add no light; without any light x and y
    /// are NaN. A #TrelColor::Yxy colour has no channel levels: (0, NaN, NaN) unless it is black.
    static void convertTrelColorToYxy(const TrelColor &color, Tristimulus *data, double Yxy[3], int onboardCurve);

    /// The same with the colour's own profile: its emitters and its default on-board curve.
    static void convertTrelColorToYxy(const TrelColor &color, double Yxy[3]);

    /// convertYxyToNChannel() and then the pre-compensation path of applyCurve16(): one 16-bit word for each
    /// channel of \a configuration at \a out.
    static void convertYxyToNChannelAndApplyCurve(const double Yxy[3], unsigned short *out,
                                                  ChannelConfiguration configuration, HuelockProfileID profile,
                                                  int curveType, bool clampToGamut);

    /// Channel levels (0..1) of \a color for a fixture: passed through where the colour is already in the
    /// fixture's terms, otherwise solved from its chromaticity for the I/O mode's input configuration (ODD-40).
    ///
    /// \param rgbPassThrough  hands generic RGB colours to a pass-through mode as they are.
    /// \param onboardCurve    has no effect on levels.
    /// \param solvedFromColor set to true when a colour other than #TrelColor::Yxy was solved; otherwise
    ///                        left as it is.
    /// \param channelCount    size of the result; a negative one counts as 0.
    /// \return a new array of \a channelCount levels, for the caller to free with delete[]. What a solve or a
    ///         pass-through does not fill is 0, what does not fit is dropped. An unknown I/O mode gives zeros.
    ///
    /// Fatal: "false", an RGB, HSV or invalid colour of another profile than generic RGB in a pass-through;
    /// "realVector.size() == channelCount + 1", an N-channel colour whose level count is not the fixture's; and
    /// convertYxyToNChannel()'s.
    static double *convertTrelColorToNChannelF(bool &solvedFromColor, TrelColor &color, bool rgbPassThrough,
                                               int channelCount, HuelockProfileID profile, IOModeID ioMode,
                                               bool clampToGamut, int onboardCurve);

    /// The DMX bytes of \a color for one fixture.
    ///
    /// \param rgbPassThrough hands generic RGB colours to a pass-through mode as they are.
    /// \param resolution     bytes a channel, 1 or 2.
    /// \param out            channelCount × resolution bytes.
    /// \param curveType      software curve, for an RGB, HSV or N-channel colour whose levels were passed through.
    /// \param onboardCurve   the fixture's own curve, compensated for all others, every Yxy colour among them.
    ///
    /// Chromaticities outside the gamut are always clamped. Fatal cases: convertTrelColorToNChannelF().
    static void convertTrelColorToDMX(TrelColor &color, bool rgbPassThrough, int channelCount, int resolution,
                                      unsigned char *out, int curveType, int onboardCurve, HuelockProfileID profile,
                                      IOModeID ioMode);

    /// The DMX bytes of \a color laid over black, channelCount × resolution of them; empty when either is
    /// below 1. Over black every colour replaces it whole, so alpha plays no part (ODD-42).
    static QList<unsigned char> updateBuffer(int curveType, int onboardCurve, const TrelColor &color,
                                             bool rgbPassThrough, int channelCount, int resolution, IOModeID ioMode,
                                             HuelockProfileID profile);

    /// Lays \a source over \a target by the source's alpha. A black target or an opaque source: a copy.
    /// A mixture carries profile #GENERIC_RGB (ODD-41). Of N-channel colours, levels that the target lacks
    /// count as 0, and those beyond the source's stay as they are.
    /// Fatal: a source wider than the calibration data of its profile (TrelColor::convertTo()'s case).
    static void updateColor(TrelColor &target, const TrelColor &source);

    /// @}

private:
    ColorUtils() = default;

    static ColorUtils *m_instance;
};

/// Scalar product of \a a and \a b as vectors.
TREL_EXPORT double dot(QPointF a, QPointF b);

/// Square of the distance between \a a and \a b.
TREL_EXPORT double length_squared(QPointF a, QPointF b);

/// Euclidean distance between \a a and \a b.
TREL_EXPORT double distance(QPointF a, QPointF b);
