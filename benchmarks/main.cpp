// What all benchmarks run under. Each proves its answer first. Times of one run are comparable with each other only;
// quote ratios.

#include <benchmark/benchmark.h>

#include <QLoggingCategory>

int main(int argc, char **argv)
{
    QLoggingCategory::setFilterRules("*.debug=false");
    benchmark::AddCustomContext("build type", TREL_BUILD_TYPE);
    benchmark::AddCustomContext("Qt", qVersion());
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
