#include "TVLTextCopy_p.h"

#include "TVLTextEdits_p.h"
#include "TVLTextFormat.h"
#include "TVLTextRuns_p.h"

#include <QHash>
#include <QSet>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextDocumentFragment>
#include <QTextFrame>
#include <QTextList>
#include <QUrl>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

// Qt copies rich text by fragments. They leave out the format of the first paragraph now and then,
// lists of it, and the bytes of pictures; here is what makes up for it.

/** A list or table has another number in each document. */
template <typename Format>
Format withoutObject(Format format)
{
    format.clearProperty(QTextFormat::ObjectIndex);
    return format;
}

/** Makes paragraphs of one document like those of another, one after the other. */
class BlockMatcher
{
public:
    void match(const QTextBlock &source, const QTextBlock &target)
    {
        if (target.textList() && !source.textList())
            target.textList()->remove(target);
        QTextCursor cursor(target);
        const QTextBlockFormat format = withoutObject(source.blockFormat());
        if (withoutObject(target.blockFormat()) != format)
            cursor.setBlockFormat(format);
        // A new format takes a paragraph out of its list, and a list without paragraphs is gone.
        if (source.textList())
            matchList(source.textList(), target);
        const QTextCharFormat charFormat = withoutObject(source.charFormat());
        if (withoutObject(target.charFormat()) != charFormat && tvlHasOwnEndFormat(source)
            && tvlHasOwnEndFormat(target))
            cursor.setBlockCharFormat(charFormat);
    }

private:
    void matchList(const QTextList *sourceList, const QTextBlock &target)
    {
        QTextList *targetList = target.textList();
        QTextList *&known = mLists[sourceList];
        if (known) {
            if (known != targetList)
                known->add(target);
            return;
        }
        const bool isCopy = targetList && !mTaken.contains(targetList)
            && withoutObject(targetList->format()) == withoutObject(sourceList->format());
        known = isCopy ? targetList : QTextCursor(target).createList(sourceList->format());
        mTaken.insert(known);
    }

    QHash<const QTextList *, QTextList *> mLists; ///< Of the source to those of the target.
    QSet<const QTextList *> mTaken; ///< The latter.
};

bool isSamePicture(const QVariant &a, const QVariant &b)
{
    return a.metaType() == b.metaType() && a == b;
}

/** The name under which the target has or can have a picture. */
QString freePictureName(const QTextDocument *target, const QString &name, const QVariant &picture)
{
    QString candidate = name;
    for (int number = 2;; ++number) {
        const QVariant present = target->resource(QTextDocument::ImageResource, QUrl(candidate));
        if (!present.isValid() || isSamePicture(present, picture))
            return candidate;
        candidate = u"%1-%2"_s.arg(name).arg(number);
    }
}

/** Brings the pictures of a stretch to another document; gives the names of those renamed. */
QHash<QString, QString> copyPictures(const QTextDocument *source, int from, int to,
                                     QTextDocument *target)
{
    QHash<QString, QString> names;
    tvlVisitFragments(source, from, to, [&](const QTextFragment &fragment) {
        const QTextCharFormat format = fragment.charFormat();
        const QString name = format.stringProperty(QTextFormat::ImageName);
        if (!format.isImageFormat() || names.contains(name))
            return true;
        names.insert(name, name);
        const QVariant picture = source->resource(QTextDocument::ImageResource, QUrl(name));
        if (picture.isValid()) {
            names[name] = freePictureName(target, name, picture);
            target->addResource(QTextDocument::ImageResource, QUrl(names[name]), picture);
        }
        return true;
    });
    names.removeIf([](auto name) { return name.key() == *name; });
    return names;
}

void renamePictures(QTextDocument *document, int from, int to, const QHash<QString, QString> &names)
{
    if (names.isEmpty())
        return;
    TVLTextEdits edits;
    tvlVisitFragments(document, from, to, [&](const QTextFragment &fragment) {
        QTextCharFormat format = fragment.charFormat();
        const auto name = names.constFind(format.stringProperty(QTextFormat::ImageName));
        if (format.isImageFormat() && name != names.cend()) {
            format.setProperty(QTextFormat::ImageName, *name);
            // The target's own picture in front may be one stretch with the first one of the copy.
            const int start = std::max(fragment.position(), from);
            edits.setCharFormat(
                start, std::min(fragment.position() + fragment.length(), to) - start, format);
        }
        return true;
    });
    edits.apply(document);
}

/**
 * Inserts a fragment with a number of paragraph ends. Qt begins a new paragraph for one whose
 * first paragraph is a list item, unless the target is empty; that one goes again.
 */
void insertFragment(QTextCursor *cursor, const QTextDocumentFragment &fragment, int paragraphEnds)
{
    const int start = cursor->position();
    const int expected = cursor->document()->blockCount() + paragraphEnds;
    cursor->insertFragment(fragment);
    if (cursor->document()->blockCount() == expected)
        return;
    QTextCursor extra(*cursor);
    extra.setPosition(start);
    extra.deleteChar();
}

// A comment's identity is known in its own text only, and two texts may use one and the same.
// Joined, the runs of both would be those of one comment, and what the other says would be gone.

TVLCommentTexts::mapped_type commentText(const QTextFormat &format)
{
    return {format.boolProperty(TVLTextFormat::InspectorFootnote),
            format.property(TVLTextFormat::CommentText).toByteArray()};
}

/** Notes what the comment of a format says; false when its identity stands for something else. */
bool addComment(const QTextFormat &format, TVLCommentTexts *texts)
{
    const QString identity = tvlCommentMark(format);
    if (identity.isEmpty())
        return true;
    const auto text = commentText(format);
    const auto known = texts->constFind(identity);
    if (known != texts->cend())
        return *known == text;
    texts->insert(identity, text);
    return true;
}

/** Gives comments of a stretch that bear the identity of another comment one of their own. */
void separateComments(QTextDocument *document, int from, int to, TVLCommentTexts *texts)
{
    const auto commentOf = [](const QTextFormat &format) {
        return std::pair(tvlCommentMark(format), commentText(format));
    };
    // Runs of text come before the ends of paragraphs, at which what is gone may have left a mark.
    QHash<std::pair<QString, TVLCommentTexts::mapped_type>, QString> identities;
    tvlVisitFragments(document, from, to, [&](const QTextFragment &fragment) {
        const QTextCharFormat format = fragment.charFormat();
        if (!addComment(format, texts) && !identities.contains(commentOf(format)))
            identities.insert(commentOf(format), TVLTextFormat::newCommentIdentity());
        return true;
    });
    if (identities.isEmpty())
        return;
    TVLTextEdits edits;
    tvlChangeFormats(
        document, from, to,
        [&](QTextCharFormat *format) {
            const auto identity = identities.constFind(commentOf(*format));
            if (identity == identities.cend())
                return false;
            format->setProperty(TVLTextFormat::CommentIdentity, *identity);
            return true;
        },
        &edits);
    edits.apply(document);
    for (auto identity = identities.cbegin(); identity != identities.cend(); ++identity)
        texts->insert(*identity, identity.key().second);
}

/** What a document as a whole has beside its text. */
void copySettings(const QTextDocument *source, QTextDocument *target)
{
    for (const auto information :
         {QTextDocument::DocumentTitle, QTextDocument::DocumentUrl, QTextDocument::CssMedia})
        target->setMetaInformation(information, source->metaInformation(information));
    target->setBaseUrl(source->baseUrl());
    target->setDefaultFont(source->defaultFont());
    target->setDefaultTextOption(source->defaultTextOption());
    target->setDefaultStyleSheet(source->defaultStyleSheet());
    target->setDefaultCursorMoveStyle(source->defaultCursorMoveStyle());
    target->setPageSize(source->pageSize());
    target->setIndentWidth(source->indentWidth());
    target->setDocumentMargin(source->documentMargin());
    target->rootFrame()->setFrameFormat(source->rootFrame()->frameFormat());
}

} // namespace

QTextDocument *tvlCloneDocument(const QTextDocument *document, QObject *parent)
{
    // Qt's clone of an empty document whose paragraph is a list item is a crash.
    auto copy =
        std::unique_ptr<QTextDocument>(document->isEmpty() ? new QTextDocument : document->clone());
    copy->setUndoRedoEnabled(false);
    copySettings(document, copy.get());
    BlockMatcher matcher;
    QTextBlock target = copy->begin();
    for (QTextBlock source = document->begin(); source.isValid() && target.isValid();
         source = source.next(), target = target.next())
        matcher.match(source, target);
    copy->setModified(document->isModified());
    copy->setUndoRedoEnabled(document->isUndoRedoEnabled());
    copy->setParent(parent);
    return copy.release();
}

TVLCommentTexts tvlCommentTexts(const QTextDocument *document)
{
    TVLCommentTexts texts;
    tvlVisitFragments(document, 0, tvlEndOf(document), [&texts](const QTextFragment &fragment) {
        (void)addComment(fragment.charFormat(), &texts);
        return true;
    });
    return texts;
}

void tvlInsertText(QTextCursor cursor, const QTextDocument *source, int from, int to,
                   TVLCommentTexts *comments)
{
    QTextDocument *document = cursor.document();
    // A cursor that only selects leaves the document as it is.
    QTextCursor stretch(const_cast<QTextDocument *>(source));
    stretch.setPosition(from);
    stretch.setPosition(to, QTextCursor::KeepAnchor);

    cursor.beginEditBlock();
    cursor.removeSelectedText();
    const bool takesFirstFormat = cursor.block().length() == 1;
    const int start = cursor.position();
    const QHash<QString, QString> renamed = copyPictures(source, from, to, document);
    insertFragment(&cursor, QTextDocumentFragment(stretch),
                   source->findBlock(to).blockNumber() - source->findBlock(from).blockNumber());
    renamePictures(document, start, cursor.position(), renamed);

    BlockMatcher matcher;
    QTextBlock target = document->findBlock(start);
    for (QTextBlock block = source->findBlock(from); block.isValid() && block.position() <= to;
         block = block.next(), target = target.next()) {
        if (takesFirstFormat || block.position() > from)
            matcher.match(block, target);
    }
    separateComments(document, start, cursor.position(), comments);
    cursor.endEditBlock();
}
