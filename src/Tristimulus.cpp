#include "Tristimulus.h"

#include "TrelColor.h"

#include <cmath>

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
    m_sides.clear();
    m_edges.clear();
    for (const auto &primary : PRIMARIES) {
        const TrelColor color = TrelColor::fromRgbF(primary[0], primary[1], primary[2], 0.0, m_profile).toYxy();
        m_gamut.append(QPointF(color.getx(), color.gety()));
    }
    for (int i = 1; i < int(m_gamut.size()); ++i)
        addSide(m_gamut.at(i - 1), m_gamut.at(i));
    if (m_gamut.last() != m_gamut.first())
        addSide(m_gamut.last(), m_gamut.first());
    for (int i = 0; i < int(m_gamut.size()); ++i)
        addEdge(m_gamut.at(i), m_gamut.at(edgeEnd(i)));
}

bool Tristimulus::inside(double x, double y) const
{
    // As QPolygonF::containsPoint() does it, with the slopes worked out before.
    bool isInside = false;
    for (const Side &side : m_sides) {
        // No branches: no side foretells the next.
        isInside ^= (y >= side.lowY) & (y < side.highY) & (side.lowX + side.slope * (y - side.lowY) <= x);
    }
    return isInside;
}

bool Tristimulus::closestPtOnGamut(double x, double y, double &closestX, double &closestY) const
{
    constexpr double NONE_YET = -1.0;
    if (inside(x, y)) {
        closestX = x;
        closestY = y;
        return true;
    }

    const QPointF point(x, y);
    double best = NONE_YET;
    for (const Edge &edge : m_edges) {
        const QPointF nearest = edge.nearestTo(point);
        const QPointF to = nearest - point;
        const double way = std::sqrt(to.x() * to.x() + to.y() * to.y());
        if (best == NONE_YET || best > way) {
            best = way;
            closestX = nearest.x();
            closestY = nearest.y();
        }
    }
    return false;
}

/// As ColorUtils::minDistance() does it, written out, since its parts are exported functions of another unit and
/// every colour outside the gamut comes here three times.
QPointF Tristimulus::Edge::nearestTo(QPointF point) const
{
    if (squaredLength == 0)
        return start;
    const QPointF from = point - start;
    const double t = (from.x() * along.x() + from.y() * along.y()) / squaredLength;
    if (t < 0)
        return start;
    return t > 1 ? end : start + t * along;
}

/// Adds the side between \a a and \a b, unless it is level, which no level line crosses.
void Tristimulus::addSide(QPointF a, QPointF b)
{
    if (qFuzzyCompare(a.y(), b.y()))
        return;
    const QPointF low = b.y() < a.y() ? b : a;
    const QPointF high = b.y() < a.y() ? a : b;
    m_sides.append({low.x(), low.y(), high.y(), (high.x() - low.x()) / (high.y() - low.y())});
}

void Tristimulus::addEdge(QPointF a, QPointF b)
{
    m_edges.append({a, b, b - a, length_squared(a, b)});
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
