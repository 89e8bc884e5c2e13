#pragma once

#include "TestSupport.h"

#include <Curve.h>

#include <memory>

/// What holds for every curve with control points; a test of one curve adds values that were computed by hand.
class GammaCurveTest : public TrelTest
{
    Q_OBJECT

public:
    using Factory = std::unique_ptr<Curve> (*)();

    /// \param points the 256 control points that the curve must have.
    GammaCurveTest(Factory createCurve, const int (&points)[256]);

    /// Curve values of \a index at 16 and at 8 bits.
    static int word(const Curve &curve, int index);
    static int byte(const Curve &curve, int index);

    /// For TREL_TEST_MAIN: reading beyond the tables of a curve.
    template <typename GammaCurve>
    static ChildCases childCases()
    {
        return {{"word 65536", [] { word(GammaCurve(), 65536); }},
                {"word -1", [] { word(GammaCurve(), -1); }},
                {"byte 256", [] { byte(GammaCurve(), 256); }},
                {"byte -1", [] { byte(GammaCurve(), -1); }}};
    }

protected:
    const std::unique_ptr<Curve> m_curve;

private Q_SLOTS:
    void controlPoints();
    void wordsBetweenPoints();
    void bytesAreRoundedPoints();
    void buildingAgainChangesNothing();
    void indexBeyondTableIsFatal_data();
    void indexBeyondTableIsFatal();

private:
    int interpolated(int index) const;

    const int (&m_points)[256];
};
