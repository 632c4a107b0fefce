#include "TVLXmlText_p.h"

#include <QXmlStreamWriter>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isDroppedControl(char16_t unit)
{
    return unit < u' ' && unit != u'\t' && unit != u'\n' && unit != u'\r';
}

bool needsCare(QChar ch)
{
    return isDroppedControl(ch.unicode()) || ch.isSurrogate() || ch.unicode() >= 0xfffe;
}

} // namespace

QString tvlXmlText(const QString &text)
{
    const auto firstBad = std::find_if(text.cbegin(), text.cend(), needsCare);
    if (firstBad == text.cend())
        return text;

    qsizetype i = firstBad - text.cbegin();
    QString clean = text.left(i);
    clean.reserve(text.size());
    for (; i < text.size(); ++i) {
        const QChar ch = text.at(i);
        if (ch.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            clean.append(ch);
            clean.append(text.at(++i));
        } else if (ch.isSurrogate() || ch.unicode() >= 0xfffe) {
            clean.append(QChar::ReplacementCharacter);
        } else if (!isDroppedControl(ch.unicode())) {
            clean.append(ch);
        }
    }
    return clean;
}

void tvlWriteXmlCharacters(QXmlStreamWriter *writer, const QString &text)
{
    tvlWriteXmlText(writer, tvlXmlText(text));
}

void tvlWriteXmlText(QXmlStreamWriter *writer, const QString &clean)
{
    qsizetype start = 0;
    for (qsizetype end = clean.indexOf(u'\r'); end >= 0; end = clean.indexOf(u'\r', start)) {
        writer->writeCharacters(clean.sliced(start, end - start));
        writer->writeEntityReference(u"#13"_s);
        start = end + 1;
    }
    writer->writeCharacters(start == 0 ? clean : clean.sliced(start));
}
