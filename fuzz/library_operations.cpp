// Any sequence of library operations, against the plain model of the library.

#include "Fuzz.h"
#include "LibraryTwins.h"

#include <TrelColorLibrary.h>

#include <cstdio>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Fuzz::Input input(data, size);
    LibraryTwins twins([&input] { return unsigned(input.any<std::uint8_t>()); });
    while (!input.isEmpty()) {
        twins.step();
        twins.lookUp();
    }
    const QString difference = twins.difference();
    if (!difference.isEmpty())
        std::fprintf(stderr, "%s\n", qPrintable(difference));
    FUZZ_REQUIRE(difference.isEmpty());
    TrelColorLibrary::cleanup();
    Fuzz::deleteLater();
    return 0;
}
