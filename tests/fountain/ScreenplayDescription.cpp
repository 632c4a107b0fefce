#include "ScreenplayDescription.h"

#include "TVLTextFormat.h"
#include "TVLTextRtf.h"
#include "TvlFountain.h"

#include <QFont>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFragment>

using namespace Qt::StringLiterals;

namespace {

QString escaped(const QString &text)
{
    QString result;
    for (const QChar ch : text) {
        if (ch == QChar(QChar::LineSeparator) || ch == u'\n')
            result += u"\\n"_s;
        else if (ch == u'\t')
            result += u"\\t"_s;
        else if (QStringView(u"\\<>{}").contains(ch))
            result += u'\\' + QString(ch);
        else
            result += ch;
    }
    return result;
}

QString lettersOf(const QTextCharFormat &format)
{
    QString letters;
    if (format.fontWeight() >= QFont::Bold)
        letters += u'b';
    if (format.fontItalic())
        letters += u'i';
    if (format.fontUnderline())
        letters += u'u';
    if (format.boolProperty(TVLTextFormat::InlineAnnotation))
        letters += u'n';
    if (format.boolProperty(TVLTextFormat::InlineFootnote))
        letters += u'f';
    if (format.boolProperty(TVLTextFormat::Hidden))
        letters += u'x';
    return letters;
}

/** A paragraph's runs, of which neighbours with the same letters are one. */
QString describeText(const QTextBlock &block)
{
    QString result;
    QString open;
    QString identity;
    QString comment;
    const auto closeRun = [&] {
        if (!open.isEmpty())
            result += u'>';
        open.clear();
    };
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextCharFormat format = it.fragment().charFormat();
        const TVLTextCommentLink link = TVLTextFormat::comment(format);
        if (link.mIdentity != identity) {
            closeRun();
            result += comment;
            comment.clear();
        }
        const QString letters = lettersOf(format);
        if (letters != open) {
            closeRun();
            if (!letters.isEmpty())
                result += u'<' + letters + u':';
            open = letters;
        }
        result += escaped(it.fragment().text());
        identity = link.mIdentity;
        if (!identity.isEmpty())
            comment = (link.mIsFootnote ? u"{*"_s : u"{"_s)
                + escaped(TVLTextRtf::rtfToPlainText(link.mRtf)) + u'}';
    }
    closeRun();
    return result + comment;
}

QString describeAlignment(Qt::Alignment alignment)
{
    switch (int(alignment & Qt::AlignHorizontal_Mask)) {
    case Qt::AlignHCenter:
        return u"centered"_s;
    case Qt::AlignRight:
        return u"right"_s;
    case Qt::AlignJustify:
        return u"justified"_s;
    default:
        return {};
    }
}

QString describeBlock(const QTextBlock &block)
{
    const QTextBlockFormat format = block.blockFormat();
    const QString element = format.stringProperty(TVLTextFormat::ScriptElement);
    QStringList parts;
    if (const QString type = format.stringProperty(TVLTextFormat::ScriptType); !type.isEmpty())
        parts += type;
    if (const int level = format.headingLevel(); level > 0)
        parts += u"level "_s
            + QString::number(std::max(level, format.intProperty(TVLTextFormat::SectionDepth)));
    if (const QString number = format.stringProperty(TVLTextFormat::SceneNumber); !number.isEmpty())
        parts += u"number "_s + number;
    if (format.boolProperty(TVLTextFormat::DualDialogue))
        parts += u"dual"_s;
    const QString alignment = describeAlignment(format.alignment());
    // That of a transition is to the right by itself.
    if (!alignment.isEmpty() && (element != u"Transition" || alignment != u"right"))
        parts += alignment;
    if (format.pageBreakPolicy().testFlag(QTextFormat::PageBreak_AlwaysBefore))
        parts += u"page"_s;
    return (element.isEmpty() ? u"-"_s : element)
        + (parts.isEmpty() ? QString() : u" ("_s + parts.join(u", "_s) + u')') + u": "_s
        + describeText(block) + u'\n';
}

} // namespace

QString describeScreenplay(const QTextDocument &document)
{
    QString result;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next())
        result += describeBlock(block);
    return result;
}

QString describeFountain(const QString &fountain, const QList<TVLScriptElement> &elements)
{
    QTextDocument document;
    return TvlFountain::parseText(fountain, &document, elements) ? describeScreenplay(document)
                                                                 : QString();
}
