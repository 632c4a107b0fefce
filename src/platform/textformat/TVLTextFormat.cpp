#include "TVLTextFormat.h"

#include "TUuid.h"
#include "TVLDoors.h"
#include "TVLOptions.h"

#include <QTextDocument>
#include <QUuid>

#include <algorithm>

namespace {

constexpr QStringView InternalLinkPrefix = u"tavellnk://";
constexpr QStringView CommentPrefix = u"tavelcmt://";

constexpr int CommentProperties[] = {
    TVLTextFormat::InspectorComment, TVLTextFormat::InspectorFootnote,
    TVLTextFormat::CommentIdentity,  TVLTextFormat::CommentColor,
    TVLTextFormat::CommentText,      TVLTextFormat::CommentIsCollapsed,
    TVLTextFormat::CommentNumber,
};

/** What an address into the project names its item by; empty for any other address. */
QStringView linkTarget(QStringView address)
{
    address = address.trimmed();
    return address.startsWith(InternalLinkPrefix) ? address.mid(InternalLinkPrefix.size())
                                                  : QStringView();
}

/** QUuid itself also takes texts that only begin with a uuid. */
bool hasLengthOfUuid(QStringView text)
{
    constexpr qsizetype Bare = 36;
    return text.size() == Bare
        || (text.size() == Bare + 2 && text.startsWith(u'{') && text.endsWith(u'}'));
}

bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

} // namespace

// --- Links

QString TVLTextFormat::internalLinkPrefix()
{
    return InternalLinkPrefix.toString();
}

QString TVLTextFormat::commentPrefix()
{
    return CommentPrefix.toString();
}

bool TVLTextFormat::isTavelinorLink(const QString &address)
{
    return isTavelinorLinkWithNodeId(address) || isTavelinorLinkWithUuid(address);
}

bool TVLTextFormat::isTavelinorLinkWithUuid(const QString &address)
{
    return !linkedNodeUuid(address).isNull();
}

bool TVLTextFormat::isTavelinorLinkWithNodeId(const QString &address)
{
    return linkedNodeId(address).has_value();
}

std::optional<int> TVLTextFormat::linkedNodeId(const QString &address)
{
    const QStringView target = linkTarget(address);
    bool isNumber = std::all_of(target.begin(), target.end(), isDigit);
    const int id = isNumber ? target.toInt(&isNumber) : 0;
    return isNumber ? std::optional(id) : std::nullopt;
}

QUuid TVLTextFormat::linkedNodeUuid(const QString &address)
{
    const QStringView target = linkTarget(address);
    return hasLengthOfUuid(target) ? QUuid::fromString(target) : QUuid();
}

QString TVLTextFormat::internalLinkAddress(const QUuid &uuid)
{
    return internalLinkPrefix() + TUuid::toStringNoBraces(uuid, true);
}

QString TVLTextFormat::internalLinkAddress(int id)
{
    return internalLinkPrefix() + QString::number(id);
}

void TVLTextFormat::setLink(QTextCharFormat *format, const QString &address)
{
    format->setAnchor(true);
    format->setAnchorHref(address);
    if (isTavelinorLink(address))
        format->setProperty(InternalLink, true);
    else
        format->clearProperty(InternalLink);
}

void TVLTextFormat::clearLink(QTextCharFormat *format)
{
    format->clearProperty(QTextFormat::AnchorHref);
    format->clearProperty(InternalLink);
    // A run may also be a place that links lead to.
    if (format->anchorNames().isEmpty())
        format->clearProperty(QTextFormat::IsAnchor);
}

// --- Comments and footnotes of the inspector

bool TVLTextFormat::hasComment(const QTextFormat &format)
{
    return (format.boolProperty(InspectorComment) || format.boolProperty(InspectorFootnote))
        && !format.stringProperty(CommentIdentity).isEmpty();
}

TVLTextCommentLink TVLTextFormat::comment(const QTextFormat &format)
{
    if (!hasComment(format))
        return {};
    TVLTextCommentLink comment(format.stringProperty(CommentIdentity),
                               format.property(CommentText).toByteArray());
    comment.mIsFootnote = format.boolProperty(InspectorFootnote);
    comment.mIsCollapsed = format.boolProperty(CommentIsCollapsed);
    comment.mColor = format.colorProperty(CommentColor);
    comment.mNumber = format.intProperty(CommentNumber);
    return comment;
}

void TVLTextFormat::setComment(QTextCharFormat *format, const TVLTextCommentLink &comment)
{
    clearComment(format);
    if (comment.mIdentity.isEmpty())
        return;
    // What is as by default has no property, so a run looks the same whether it was read from a
    // file or made in an editor.
    format->setProperty(comment.mIsFootnote ? InspectorFootnote : InspectorComment, true);
    format->setProperty(CommentIdentity, comment.mIdentity);
    if (!comment.mRtf.isEmpty())
        format->setProperty(CommentText, comment.mRtf);
    if (comment.mIsCollapsed)
        format->setProperty(CommentIsCollapsed, true);
    if (comment.mColor.isValid())
        format->setProperty(CommentColor, comment.mColor);
    if (comment.mNumber != 0)
        format->setProperty(CommentNumber, comment.mNumber);
}

void TVLTextFormat::clearComment(QTextCharFormat *format)
{
    for (const int property : CommentProperties)
        format->clearProperty(property);
}

QString TVLTextFormat::newCommentIdentity()
{
    return TUuid::toStringNoBraces(tvlNewUuid(), true);
}

// --- Defaults

QTextCharFormat TVLTextFormat::defaultCharFormat()
{
    QTextCharFormat format;
    format.setFont(tvlOptions()->value(TVLOptions::DefaultFont));
    return format;
}

void TVLTextFormat::setDefaultCharFormat(QTextDocument *document)
{
    if (document)
        document->setDefaultFont(tvlOptions()->value(TVLOptions::DefaultFont));
}
