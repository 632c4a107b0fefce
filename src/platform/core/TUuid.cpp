#include "TUuid.h"

namespace {

constexpr int TextLength = 36;

/** Writes the hexadecimal digits of a number from the highest on. */
template <typename Number>
QChar *writeDigits(QChar *out, Number number, QStringView digits)
{
    for (int shift = int(sizeof(Number)) * 8 - 4; shift >= 0; shift -= 4)
        *out++ = digits[(number >> shift) & 0xf];
    return out;
}

} // namespace

QString TUuid::toStringNoBraces(const QUuid &uuid, bool upperCase)
{
    // QUuid::toString() followed by toUpper() would allocate twice.
    const QStringView digits = upperCase ? u"0123456789ABCDEF" : u"0123456789abcdef";
    QString text(TextLength, Qt::Uninitialized);
    QChar *out = writeDigits(text.data(), uuid.data1, digits);
    *out++ = u'-';
    out = writeDigits(out, uuid.data2, digits);
    *out++ = u'-';
    out = writeDigits(out, uuid.data3, digits);
    *out++ = u'-';
    for (int i = 0; i < 8; ++i) {
        if (i == 2)
            *out++ = u'-';
        out = writeDigits(out, uuid.data4[i], digits);
    }
    return text;
}

QUuid TUuid::fromWholeText(QStringView text)
{
    if (text.startsWith(u'{') && text.endsWith(u'}'))
        text = text.mid(1).chopped(1);
    return text.size() == TextLength && !text.startsWith(u'{') ? QUuid::fromString(text) : QUuid();
}
