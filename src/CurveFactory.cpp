#include "CurveFactory.h"

#include "GammaCurveTrel.h"
#include "GammaCurveTungsten.h"

#include <QObject>
#include <QString>

namespace {

// By curve type.
constexpr const char *NAMES[] = {
    QT_TRANSLATE_NOOP("QObject", "Linear (Default)"),
    QT_TRANSLATE_NOOP("QObject", "Normal (Trel Gamma)"),
    QT_TRANSLATE_NOOP("QObject", "Tungsten/Incandescent"),
};
constexpr int CURVE_COUNT = int(std::size(NAMES));

} // namespace

CurveFactory *CurveFactory::m_instance = nullptr;

CurveFactory *CurveFactory::Instance()
{
    if (!m_instance)
        m_instance = new CurveFactory;
    return m_instance;
}

CurveFactory::CurveFactory()
{
    createCurves();
}

CurveFactory::~CurveFactory()
{
    qDeleteAll(m_curves);
}

Curve *CurveFactory::getCurve(int type) const
{
    const bool isCurve = type >= 0 && std::size_t(type) < m_curves.size();
    return m_curves[isCurve ? std::size_t(type) : 0];
}

QString CurveFactory::nameForCurveType(int type) const
{
    if (type < 0 || type >= CURVE_COUNT)
        return QString();
    return QObject::tr(NAMES[type]);
}

int CurveFactory::curveTypeFromName(QString name) const
{
    for (int type = 0; type < CURVE_COUNT; ++type) {
        if (name == nameForCurveType(type))
            return type;
    }
    return -1;
}

void CurveFactory::createCurves()
{
    m_curves = {new Curve, new GammaCurveTrelNormal, new GammaCurveTungsten};
}
