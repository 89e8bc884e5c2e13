#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstring>

/// Ends the program, which is what the fuzzer calls a finding, unless \a condition holds.
#define FUZZ_REQUIRE(condition) ((condition) ? void() : Fuzz::fail(#condition, __FILE__, __LINE__))

namespace Fuzz {

[[noreturn]] void fail(const char *condition, const char *file, int line);

/// What a target needs once, before its first input.
void prepare();

/// Lets what the library wants to delete later go now; else a run without an event loop only grows.
void deleteLater();

/// A file of the process's own with \a bytes in it. \return its path, the same every time.
QString fileWith(const QByteArray &bytes);

/// The bytes of one input, drawn as what a target needs. Behind their end everything is 0.
class Input
{
public:
    Input(const std::uint8_t *data, std::size_t size)
        : m_data(data)
        , m_size(size)
    {
    }

    bool isEmpty() const
    {
        return m_size == 0;
    }

    /// Any value of a plain type, bit by bit.
    template <typename T>
    T any()
    {
        T value = T();
        const std::size_t count = m_size < sizeof value ? m_size : sizeof value;
        std::memcpy(&value, m_data, count);
        skip(count);
        return value;
    }

    /// 0 to \a count − 1.
    int draw(int count)
    {
        return int(any<std::uint8_t>()) % count;
    }

    /// Often a number of the kind that programs pass, sometimes any number at all.
    double real();
    /// The same for integers.
    int integer();

    /// All that is left.
    QByteArray rest();

private:
    void skip(std::size_t count)
    {
        m_data += count;
        m_size -= count;
    }

    const std::uint8_t *m_data;
    std::size_t m_size;
};

} // namespace Fuzz

/// One input, through a target.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
/// Called once, before the first.
extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);
