#pragma once

#include <QString>
#include <QStringView>
#include <QVarLengthArray>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <limits>

// Value strings and names of colours, field by field.

/// Takes a value string apart, field by field. Numbers as they are usually written are read where they stand; any
/// other text, if it is a number at all, is left to QString.
class Fields
{
public:
    explicit Fields(QStringView text)
        : m_place(text.data())
        , m_end(text.data() + text.size())
        , m_left(int(std::count(m_place, m_end, QLatin1Char(';'))) + 1)
    {
    }

    /// How many fields are left. Each function below takes one.
    int left() const
    {
        return m_left;
    }

    QStringView next()
    {
        const QChar *begin = m_place;
        const QChar *end = std::find(begin, m_end, QLatin1Char(';'));
        take(end);
        return QStringView(begin, end);
    }

    int nextInt()
    {
        const Digits digits(m_place, m_end);
        return takeNumber(digits) ? int(digits.number) : next().toString().toInt();
    }

    unsigned int nextUInt()
    {
        const Digits digits(m_place, m_end);
        return takeNumber(digits) ? unsigned(digits.number) : next().toString().toUInt();
    }

    double nextReal()
    {
        static constexpr int POWERS[] = {1, 10, 100, 1000, 10000, 100000, 1000000};
        const Digits whole(m_place, m_end);
        if (whole.count == 0 || whole.end == m_end || *whole.end != QLatin1Char('.'))
            return next().toString().toDouble();
        const Digits fraction(whole.end + 1, m_end);
        if (std::size_t(fraction.count) >= std::size(POWERS) || !takeNumber(fraction))
            return next().toString().toDouble();
        // Below 2^53 all is exact but for the quotient, which is the double nearest to the text.
        const qint64 power = POWERS[fraction.count];
        return double(whole.number * power + fraction.number) / double(power);
    }

private:
    /// The decimal digits at a place, no more than fit into an int.
    struct Digits
    {
        Digits(const QChar *begin, const QChar *limit)
            : end(begin)
        {
            for (; end != limit && count < std::numeric_limits<int>::digits10; ++end, ++count) {
                const int digit = end->unicode() - '0';
                if (digit < 0 || digit > 9)
                    break;
                number = 10 * number + digit;
            }
        }
        const QChar *end;
        int count = 0;
        qint64 number = 0;
    };

    void take(const QChar *end)
    {
        m_place = end == m_end ? end : end + 1;
        --m_left;
    }

    /// Takes the field that ends with \a digits, if there are any and no other character follows.
    bool takeNumber(const Digits &digits)
    {
        const bool isNumber = digits.count > 0 && (digits.end == m_end || *digits.end == QLatin1Char(';'));
        if (isNumber)
            take(digits.end);
        return isNumber;
    }

    const QChar *m_place;
    const QChar *m_end;
    int m_left;
};

/// Puts a value string or a name together, so that only the finished text takes memory.
class TextWriter
{
public:
    /// For \a form, followed by up to \a fields fields.
    TextWriter(QLatin1String form, int fields)
        : m_text(int(form.size()) + fields * LONGEST_FIELD)
        , m_place(std::copy(form.begin(), form.end(), m_text.begin()))
    {
    }

    /// The same with configuration and profile.
    TextWriter(QLatin1String form, int fields, int configuration, int profile)
        : TextWriter(form, fields + 2)
    {
        appendField(configuration);
        appendField(profile);
    }
    Q_DISABLE_COPY(TextWriter)

    void append(char character)
    {
        *m_place++ = character;
    }

    /// Four hexadecimal digits.
    void appendHex(unsigned int value)
    {
        for (int shift = 12; shift >= 0; shift -= 4)
            append("0123456789abcdef"[value >> shift & 0xF]);
    }

    /// ";" and decimal digits.
    template <typename Integer>
    void appendField(Integer value)
    {
        append(';');
        m_place = std::to_chars(m_place, m_text.end(), value).ptr;
    }

    /// ";", digits and six decimals.
    void appendMillionths(qint64 value)
    {
        constexpr qint64 MILLION = 1000000;
        appendField(value / MILLION);
        // A digit in front keeps the zeros.
        char *point = m_place;
        m_place = std::to_chars(m_place, m_text.end(), value % MILLION + MILLION).ptr;
        *point = '.';
    }

    QString text() const
    {
        Q_ASSERT(m_place <= m_text.end());
        return QString::fromLatin1(m_text.data(), int(m_place - m_text.data()));
    }

private:
    static constexpr int LONGEST_FIELD = 18; // ";#" and 16 digits; a real has up to 14, an integer up to 12
    QVarLengthArray<char, 256> m_text;
    char *m_place;
};

inline constexpr qint64 NO_MILLIONTHS = -1;

/// The digits of \a value with six decimals, as "%f" rounds it. NO_MILLIONTHS where it takes more than a product of
/// doubles to tell: for large and negative numbers, NaN, and where the seventh decimal is nearly a half.
inline qint64 millionthsOf(double value)
{
    constexpr double LIMIT = 1e6;
    constexpr double MARGIN = 1e-4; // a product below 2^40 is off by at most 2^-14
    if (std::signbit(value) || !(value < LIMIT))
        return NO_MILLIONTHS;
    const double millionths = value * 1e6;
    const auto below = qint64(millionths);
    const double rest = millionths - double(below);
    if (std::abs(rest - 0.5) < MARGIN)
        return NO_MILLIONTHS;
    return rest < 0.5 ? below : below + 1;
}
