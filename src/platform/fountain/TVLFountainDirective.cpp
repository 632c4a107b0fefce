#include "TVLFountainDirective_p.h"

#include "TVLWordTable_p.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QChar Mark = u':';
constexpr QChar Separator = u';';
constexpr QChar Escape = u'%';
constexpr int EscapeDigits = 4;

constexpr TVLWord<int> AlignmentNames[] = {
    {Qt::AlignLeft, u"Left"},
    {Qt::AlignRight, u"Right"},
    {Qt::AlignHCenter, u"Center"},
    {Qt::AlignJustify, u"Justify"},
};

bool needsEscape(QChar ch)
{
    return ch == Escape || ch == Separator || ch == u'*' || ch == u'/' || ch == u'['
        || ch.unicode() <= u'\x1f' || ch == QChar(QChar::LineSeparator);
}

QString escapedValue(const QString &value)
{
    QString result;
    for (const QChar ch : value) {
        if (needsEscape(ch))
            result += Escape + QString::number(ch.unicode(), 16).rightJustified(EscapeDigits, u'0');
        else
            result += ch;
    }
    return result;
}

QString unescapedValue(QStringView value)
{
    QString result;
    for (qsizetype i = 0; i < value.size(); ++i) {
        bool isCode = false;
        char16_t code = 0;
        if (value.at(i) == Escape && i + EscapeDigits < value.size())
            code = char16_t(value.sliced(i + 1, EscapeDigits).toUShort(&isCode, 16));
        result += isCode ? QChar(code) : value.at(i);
        if (isCode)
            i += EscapeDigits;
    }
    return result;
}

/** Takes over one word and its value; false for a word that isn't known. */
bool readWord(QStringView word, QStringView value, TVLFountainDirective *directive)
{
    TVLScreenplayParagraph &paragraph = directive->mParagraph;
    if (word == u"element") {
        paragraph.mType = unescapedValue(value);
        paragraph.mKind = tvlScreenplayKind(paragraph.mType);
        if (paragraph.mKind != TVLScreenplayKind::Other)
            paragraph.mType.clear();
        directive->mIsOfParagraph = true;
    } else if (word == u"number") {
        paragraph.mSceneNumber = unescapedValue(value);
    } else if (word == u"align") {
        paragraph.mAlignment = tvlValueOf(AlignmentNames, value, 0);
    } else if (word == u"depth") {
        paragraph.mDepth = value.toInt();
    } else if (word == u"dual") {
        paragraph.mIsDual = true;
    } else if (word == u"comment" || word == u"footnote") {
        directive->mIsOfNote = true;
        directive->mIsFootnote = word == u"footnote";
        bool hasLength = false;
        const int length = value.toInt(&hasLength);
        if (hasLength && length >= 0)
            directive->mHangsOn = length;
    } else {
        return false;
    }
    return true;
}

QString inSigns(const QString &words)
{
    return u"/*"_s + Mark + words + u"*/"_s;
}

} // namespace

std::optional<TVLFountainDirective> TVLFountainDirective::read(QStringView content)
{
    if (!content.startsWith(Mark))
        return {};
    TVLFountainDirective directive;
    const auto parts = content.sliced(1).split(Separator);
    for (const QStringView part : parts) {
        const qsizetype blank = part.indexOf(u' ');
        const QStringView word = blank < 0 ? part : part.first(blank);
        const QStringView value = blank < 0 ? QStringView() : part.sliced(blank + 1);
        if (!readWord(word, value, &directive))
            return {};
    }
    if (directive.mIsOfParagraph == directive.mIsOfNote)
        return {};
    if (directive.mIsOfNote && !directive.mIsFootnote && directive.mHangsOn < 0)
        return {};
    return directive;
}

QString TVLFountainDirective::ofParagraph(const TVLScreenplayParagraph &paragraph)
{
    QString words = u"element "_s
        + escapedValue(paragraph.mKind == TVLScreenplayKind::Other
                           ? paragraph.mType
                           : tvlScreenplayWord(paragraph.mKind));
    if (!paragraph.mSceneNumber.isEmpty())
        words += u";number "_s + escapedValue(paragraph.mSceneNumber);
    if (paragraph.mAlignment != 0)
        words += u";align "_s
            + tvlWordOf(AlignmentNames, paragraph.mAlignment, QStringView(u"Left")).toString();
    if (paragraph.mKind == TVLScreenplayKind::Section)
        words += u";depth "_s + QString::number(paragraph.mDepth);
    if (paragraph.mIsDual)
        words += u";dual"_s;
    return inSigns(words);
}

QString TVLFountainDirective::ofComment(const TVLScreenplayComment &comment)
{
    return inSigns((comment.mIsFootnote ? u"footnote "_s : u"comment "_s)
                   + QString::number(comment.mLength));
}

QString TVLFountainDirective::ofFootnote()
{
    return inSigns(u"footnote"_s);
}
