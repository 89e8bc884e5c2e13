#pragma once

#include "ColorUtils.h"

#include <QPolygonF>
#include <QStringList>
#include <QVector>

/// The measured colour of every emitter of one fixture profile, and the gamut that they span.
///
/// X, Y, Z (CIE 1931, any unit that is the same within a set) and the channel names are parallel: entry i of
/// each belongs to channel i. Whoever fills them keeps them of one length; nothing here enforces it.
/// The objects belong to TristimulusFactory.
class TREL_EXPORT Tristimulus
{
public:
    /// Empty data for profile \a profile.
    explicit Tristimulus(ColorUtils::HuelockProfileID profile);

    /// The X values, one a channel, to read or to change in place.
    QVector<double> &getX();
    /// The Y values: the luminous component, which the solver takes as a channel's light output.
    QVector<double> &getY();
    /// The Z values.
    QVector<double> &getZ();

    /// Replaces the X values.
    void setX(QVector<double> values);
    /// Replaces the Y values.
    void setY(QVector<double> values);
    /// Replaces the Z values.
    void setZ(QVector<double> values);

    /// Display names of the channels, in channel order.
    QStringList getChannelNames() const;

    /// Replaces the names, and with them the channel count.
    void setChannelNames(QStringList names);

    /// The number of channel names, whatever the vectors hold (ODD-44).
    int numChannels() const;

    /// Computes the gamut: the triangle of the profile's red, green and blue as the colour conversion sees
    /// them (ODD-43). Call it when vectors and names are final, and only once TristimulusFactory answers
    /// with this object for its profile, since the conversion asks the factory.
    void calculatePolygon();

    /// Whether chromaticity (x, y) lies in the gamut, by the odd-even rule. Nothing lies in it before
    /// calculatePolygon().
    bool inside(double x, double y) const;

    /// The point of the gamut nearest to chromaticity (x, y).
    /// \return true when the point lies inside: it is its own nearest point; otherwise false, with the
    /// nearest point of the border, of equally near ones that of the earlier edge (red-green, green-blue,
    /// blue-red). Before calculatePolygon(): false, outputs untouched.
    bool closestPtOnGamut(double x, double y, double &closestX, double &closestY) const;

private:
    /// A side of the gamut as the odd-even rule crosses it, from its lower end up.
    struct Side
    {
        double lowX;
        double lowY;
        double highY;
        double slope; ///< x over y
    };

    /// A side of the gamut as the way to it is measured.
    struct Edge
    {
        QPointF start;
        QPointF end;
        QPointF along; ///< from start to end
        double squaredLength;

        QPointF nearestTo(QPointF point) const;
    };

    void addSide(QPointF a, QPointF b);
    void addEdge(QPointF a, QPointF b);
    int edgeEnd(int start) const;

    QVector<double> m_x;
    QVector<double> m_y;
    QVector<double> m_z;
    QPolygonF m_gamut; ///< red, green, blue; the closing edge is implicit
    QVector<Side> m_sides;
    QVector<Edge> m_edges;
    ColorUtils::HuelockProfileID m_profile;
    QStringList m_channelNames;
};
