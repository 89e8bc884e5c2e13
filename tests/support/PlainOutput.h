#pragma once

#include "ColorUtils.h"

/// The road from a colour to the bytes of a fixture once more, written to be read next to its description and not
/// to be fast: every step makes its own vectors, and each level goes through the formulas of its curve. Whatever the
/// library does in place of these steps must give the same bits.
///
/// Solving is PlainSolver's. Left to the library are the registries, the getters of a colour and the tables of the
/// dimming curves.
namespace PlainOutput {

/// As ColorUtils::quadraticSolver().
float quadraticSolver(float a, float b, float c, float y, float max);

/// As the functions of the same names in ColorUtils.
unsigned short pwm16ToMNormDNormRes16(unsigned short p);
unsigned char pwm16ToMNormDNormRes8(unsigned short p);
unsigned short pwm16ToMNormDTungstenRes16(unsigned short p);
unsigned char pwm16ToMNormDTungstenRes8(unsigned short p);
unsigned char pwm16ToMNormDLinearRes8(unsigned short p);

/// As ColorUtils::dmx16ToTungstenDimRatio().
double dmx16ToTungstenDimRatio(unsigned short dmx);

/// As ColorUtils::dmx16ToSquareLawDimRatio().
double dmx16ToSquareLawDimRatio(unsigned short dmx);

/// As ColorUtils::applyCurve(), for levels that are not negative on the road through a software curve.
void applyCurve(int count, int resolution, const double *levels, unsigned char *out, int curveType, int mode);

/// As ColorUtils::convertTrelColorToYxy().
void convertTrelColorToYxy(const TrelColor &color, Tristimulus *data, double Yxy[3], int onboardCurve);

/// As ColorUtils::convertYxyToNChannelAndApplyCurve().
void convertYxyToNChannelAndApplyCurve(const double Yxy[3], unsigned short *out,
                                       ColorUtils::ChannelConfiguration configuration,
                                       ColorUtils::HuelockProfileID profile, int curveType, bool clampToGamut);

/// As ColorUtils::convertTrelColorToNChannelF(), for the ten I/O modes.
double *convertTrelColorToNChannelF(bool &solvedFromColor, TrelColor &color, bool rgbPassThrough, int channelCount,
                                    ColorUtils::HuelockProfileID profile, ColorUtils::IOModeID ioMode,
                                    bool clampToGamut, int onboardCurve);

/// As ColorUtils::convertTrelColorToDMX(), for the ten I/O modes.
void convertTrelColorToDMX(TrelColor &color, bool rgbPassThrough, int channelCount, int resolution, unsigned char *out,
                           int curveType, int onboardCurve, ColorUtils::HuelockProfileID profile,
                           ColorUtils::IOModeID ioMode);

/// As ColorUtils::updateBuffer(), for the ten I/O modes.
QList<unsigned char> updateBuffer(int curveType, int onboardCurve, const TrelColor &color, bool rgbPassThrough,
                                  int channelCount, int resolution, ColorUtils::IOModeID ioMode,
                                  ColorUtils::HuelockProfileID profile);

} // namespace PlainOutput
