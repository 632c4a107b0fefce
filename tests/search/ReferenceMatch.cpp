#include "ReferenceMatch.h"

#include "TVLQuote.h"

#include <QRegExp>

namespace {

qint64 rejected = 0;

bool accepts(const QString &text, int flags, int start, int length)
{
    if ((flags & 4) && start > 0 && text.at(start - 1).isLetterOrNumber())
        return false;
    if (!(flags & 8))
        return true;
    if (start + length == text.size())
        return true;
    return !text.at(start + length).isLetterOrNumber();
}

bool matchesWord(const QString &text, int flags, const QString &word)
{
    QString pattern = (flags & 64) ? word : QRegExp::escape(word);
    pattern.replace(u'\'', TVLQuote::singleQuotesSearchPattern());
    pattern.replace(u'"', TVLQuote::doubleQuotesSearchPattern());
    QRegExp expression(pattern, (flags & 2) ? Qt::CaseSensitive : Qt::CaseInsensitive,
                       QRegExp::RegExp2);
    int start = expression.indexIn(text, 0);
    while (start >= 0) {
        if (accepts(text, flags, start, expression.matchedLength()))
            return true;
        ++rejected;
        start = expression.indexIn(text, start + 1);
    }
    return false;
}

} // namespace

bool referenceMatch(const QString &text, int flags, const QStringList &words)
{
    const bool everyWord = (flags & 32) != 0;
    for (const QString &word : words) {
        if (matchesWord(text, flags, word) != everyWord)
            return !everyWord;
    }
    return everyWord;
}

qint64 rejectedReferenceMatches()
{
    return rejected;
}
