#include "Tristimulus.h"

#include "TrelColor.h"

namespace {

/// Equality of gamut corners. Our own, since QPointF's changed between Qt's versions.
bool isSamePoint(QPointF a, QPointF b)
{
    constexpr double TOLERANCE = 1e-12;
    return qAbs(a.x() - b.x()) <= TOLERANCE && qAbs(a.y() - b.y()) <= TOLERANCE;
}

int indexOfPoint(const QPolygonF &points, QPointF point)
{
    for (int i = 0; i < int(points.size()); ++i) {
        if (isSamePoint(points.at(i), point))
            return i;
    }
    return -1;
}

} // namespace

Tristimulus::Tristimulus(ColorUtils::HuelockProfileID profile)
    : m_profile(profile)
{
}

QVector<double> &Tristimulus::getX()
{
    return m_x;
}

QVector<double> &Tristimulus::getY()
{
    return m_y;
}

QVector<double> &Tristimulus::getZ()
{
    return m_z;
}

void Tristimulus::setX(QVector<double> values)
{
    m_x = std::move(values);
}

void Tristimulus::setY(QVector<double> values)
{
    m_y = std::move(values);
}

void Tristimulus::setZ(QVector<double> values)
{
    m_z = std::move(values);
}

QStringList Tristimulus::getChannelNames() const
{
    return m_channelNames;
}

void Tristimulus::setChannelNames(QStringList names)
{
    m_channelNames = std::move(names);
}

int Tristimulus::numChannels() const
{
    // ODD-44: the names decide, so that data without names count as no channels.
    return int(m_channelNames.size());
}

void Tristimulus::calculatePolygon()
{
    static constexpr double PRIMARIES[3][3] = {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}};

    // ODD-43: red, green and blue alone span the gamut; an amber, white or mint emitter does not widen it.
    // The alpha of 0 has no effect on the chromaticity.
    m_gamut.clear();
    for (const auto &primary : PRIMARIES) {
        const TrelColor color = TrelColor::fromRgbF(primary[0], primary[1], primary[2], 0.0, m_profile).toYxy();
        m_gamut.append(QPointF(color.getx(), color.gety()));
    }
}

bool Tristimulus::inside(double x, double y) const
{
    return m_gamut.containsPoint(QPointF(x, y), Qt::OddEvenFill);
}

bool Tristimulus::closestPtOnGamut(double x, double y, double &closestX, double &closestY) const
{
    constexpr double NONE_YET = -1.0;
    if (inside(x, y)) {
        closestX = x;
        closestY = y;
        return true;
    }

    double best = NONE_YET;
    for (int i = 0; i < int(m_gamut.size()); ++i) {
        QPointF nearest;
        const double distance = ColorUtils::minDistance(m_gamut.at(i), m_gamut.at(edgeEnd(i)), QPointF(x, y), nearest);
        if (best == NONE_YET || best > distance) {
            best = distance;
            closestX = nearest.x();
            closestY = nearest.y();
        }
    }
    return false;
}

/// Index of the other end of the edge that begins at corner \a start. Corners are looked up by value, so of two
/// equal ones the first decides.
int Tristimulus::edgeEnd(int start) const
{
    if (isSamePoint(m_gamut.at(start), m_gamut.last()))
        return 0;
    const int end = indexOfPoint(m_gamut, m_gamut.at(start)) + 1;
    Q_ASSERT_X(end < int(m_gamut.size()), "QVector<T>::at", "index out of range");
    return end;
}
