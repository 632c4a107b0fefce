#include "RandomMatches.h"

#include "TVLTextMatcher.h"

#include <vector>

using namespace Qt::StringLiterals;

namespace {

template <typename Item>
const Item &oneOf(const std::vector<Item> &items, QRandomGenerator *random)
{
    return items[random->bounded(quint32(items.size()))];
}

/** Units that a case's text and words are put together from. */
using Alphabet = std::vector<QString>;

const std::vector<Alphabet> &alphabets()
{
    const QString highHalf(QChar(0xd83d));
    const QString lowHalf(QChar(0xde00));
    static const std::vector<Alphabet> all = {
        {u"a"_s, u"b"_s},
        {u"a"_s, u"A"_s, u"b"_s, u" "_s},
        {u"a"_s, u"b"_s, u"1"_s, u"-"_s, u"B"_s},
        {u"s"_s, u"S"_s, u"\u017f"_s, u"k"_s, u"\u212a"_s, u" "_s},
        {u"i"_s, u"I"_s, u"\u0130"_s, u"\u0131"_s, u"i\u0307"_s, u"."_s},
        {u"\u00df"_s, u"\u1e9e"_s, u"ss"_s, u"\ufb01"_s, u"fi"_s, u"\u00e9"_s, u"\u00c9"_s},
        {u"\u03c3"_s, u"\u03a3"_s, u"\u03c2"_s, u"\u00b5"_s, u"\u03bc"_s, u"\u0345"_s, u"\u03b9"_s},
        {u"\u13a0"_s, u"\uab70"_s, u"\u10d0"_s, u"\u1c90"_s, u"\u01c4"_s, u"\u01c5"_s, u"\u01c6"_s},
        {u"\u043f"_s, u"\u041f"_s, u"\u0440"_s, u"\u0420"_s, u" "_s},
        {u"'"_s, u"\u2019"_s, u"\u02bc"_s, u"\""_s, u"\u201c"_s, u"s"_s, u"t"_s},
        {u"a"_s, u"\u00bb"_s, u"\""_s, u"\u2039"_s, u"'"_s},
        {u"e"_s, u"\u0301"_s, u"\u00e9"_s, u"E"_s, u" "_s},
        {u"\U0001f600"_s, u"\U00010400"_s, u"\U00010428"_s, u"a"_s, u" "_s},
        {highHalf, lowHalf, u"a"_s, u"\U0001f600"_s},
        {QString(QChar(0)), u"a"_s, u" "_s},
        {u"\ufeff"_s, u"a"_s, u"\ufffd"_s, u"\uffff"_s},
        {u"\u4e2d"_s, u"\u6587"_s, u"\u3002"_s, u"a"_s},
    };
    return all;
}

QString randomText(const Alphabet &alphabet, int units, QRandomGenerator *random)
{
    QString text;
    for (int i = 0; i < units; ++i)
        text += oneOf(alphabet, random);
    return text;
}

int randomSize(QRandomGenerator *random)
{
    // Most differences show in short texts; the search for a literal has a way of its own for
    // texts above 500 characters.
    switch (random->bounded(20)) {
    case 0:
        return random->bounded(700);
    case 1:
    case 2:
    case 3:
        return random->bounded(150);
    default:
        return random->bounded(14);
    }
}

/** Mostly a piece of the text, with a character changed now and then. */
QString randomWord(const QString &text, const Alphabet &alphabet, QRandomGenerator *random)
{
    const int kind = random->bounded(20);
    if (kind == 0)
        return {};
    if (kind == 1)
        return text + oneOf(alphabet, random);
    if (kind < 8 || text.isEmpty())
        return randomText(alphabet, 1 + random->bounded(4), random);
    const int start = random->bounded(int(text.size()));
    QString word = text.mid(start, 1 + random->bounded(kind < 12 ? 9 : 3));
    if (random->bounded(3) == 0)
        word[random->bounded(int(word.size()))] = oneOf(alphabet, random).front();
    if (random->bounded(4) == 0)
        word = random->bounded(2) ? word.toUpper() : word.toLower();
    return word;
}

QString randomExpression(const QString &text, const Alphabet &alphabet, int depth,
                         QRandomGenerator *random)
{
    static const std::vector<QString> pieces = {
        u"."_s,      u"^"_s,      u"$"_s,      u"\\b"_s,  u"\\w"_s,    u"\\d"_s,
        u"\\s"_s,    u"[ab]"_s,   u"[^a]"_s,   u"[]a]"_s, u"(a)\\1"_s, u"\\x0061"_s,
        u"\\141"_s,  u"\\."_s,    u"\\-"_s,    u"\\a"_s,  u"(?=a)"_s,  u"(?!a)"_s,
        u"(?:ab)"_s, u"[\\]a]"_s, u"\\x61b"_s, u"a{2}"_s, u"[[a]"_s,   u"[\"b]"_s,
    };
    static const std::vector<QString> bad = {u"("_s,  u"["_s, u"*"_s,   u"a{"_s, u")"_s,
                                             u"\\"_s, u"+"_s, u"{2}"_s, u"]"_s,  u"}"_s};
    static const std::vector<QString> quantifiers = {u"*"_s,     u"+"_s,    u"?"_s,  u"{0}"_s,
                                                     u"{1,2}"_s, u"{,1}"_s, u"+?"_s, u"?+"_s};
    QString expression;
    for (int i = 1 + random->bounded(4); i > 0; --i) {
        const int kind = random->bounded(24);
        if (kind < 12)
            expression += QString(randomWord(text, alphabet, random)).left(6);
        else if (kind < 18)
            expression += oneOf(pieces, random);
        else if (kind < 20 && depth < 2)
            expression += u'(' + randomExpression(text, alphabet, depth + 1, random) + u')';
        else if (kind == 20)
            expression += u'|';
        else if (kind == 21 && random->bounded(4) == 0)
            expression += oneOf(bad, random);
        if (random->bounded(5) == 0)
            expression += oneOf(quantifiers, random);
    }
    return expression;
}

} // namespace

MatchCase randomMatchCase(QRandomGenerator *random)
{
    const Alphabet &alphabet = oneOf(alphabets(), random);
    MatchCase match;
    match.text = randomText(alphabet, randomSize(random), random);
    match.flags = random->bounded(64) * 2;
    const bool areExpressions = (match.flags & TVLTextMatcher::RegularExpression) != 0;
    // Expressions may take time that grows with a power of the text.
    if (areExpressions)
        match.text.truncate(100);
    for (int i = random->bounded(12) == 0 ? 0 : 1 + random->bounded(3); i > 0; --i) {
        match.words.append(areExpressions ? randomExpression(match.text, alphabet, 0, random)
                                          : randomWord(match.text, alphabet, random));
    }
    return match;
}

QString described(const MatchCase &match)
{
    const auto escaped = [](const QString &text) {
        QString shown;
        for (const QChar character : text) {
            if (character >= u' ' && character <= u'~')
                shown += character;
            else
                shown += u"\\u%1"_s.arg(int(character.unicode()), 4, 16, QChar(u'0'));
        }
        return u'"' + shown + u'"';
    };
    QStringList words;
    for (const QString &word : match.words)
        words.append(escaped(word));
    return u"text %1, flags %2, words %3"_s.arg(escaped(match.text))
        .arg(match.flags)
        .arg(words.join(u", "_s));
}
