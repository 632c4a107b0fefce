#include "TextChecks.h"

#include "TVLTextFormat.h"

#include <QHash>
#include <QRandomGenerator>
#include <QStringList>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextList>
#include <QTextTable>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

QString marksOf(const QTextCharFormat &format)
{
    QStringList marks;
    if (format.boolProperty(TVLTextFormat::InlineAnnotation))
        marks.append(u"a"_s);
    if (format.boolProperty(TVLTextFormat::InlineFootnote))
        marks.append(u"f"_s);
    if (format.fontWeight() == QFont::Bold)
        marks.append(u"b"_s);
    if (TVLTextFormat::hasComment(format)) {
        const TVLTextCommentLink comment = TVLTextFormat::comment(format);
        marks.append((comment.mIsFootnote ? u'n' : u'c') + comment.mIdentity);
    }
    if (!format.anchorHref().isEmpty())
        marks.append(u'l' + format.anchorHref());
    if (format.isImageFormat())
        marks.append(u"p"_s);
    return marks.join(u',');
}

QString describeBlock(const QTextBlock &block)
{
    QString text;
    QString last;
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment fragment = it.fragment();
        const QString marks = marksOf(fragment.charFormat());
        if (marks != last) {
            if (!last.isEmpty())
                text += u'>';
            if (!marks.isEmpty())
                text += u'<' + marks + u':';
            last = marks;
        }
        text += fragment.charFormat().isImageFormat() ? fragment.charFormat().toImageFormat().name()
                                                      : fragment.text();
    }
    return last.isEmpty() ? text : text + u'>';
}

void describeFrame(QTextFrame::iterator it, QStringList *paragraphs)
{
    for (; !it.atEnd(); ++it) {
        if (auto *table = qobject_cast<QTextTable *>(it.currentFrame())) {
            for (int row = 0; row < table->rows(); ++row) {
                for (int column = 0; column < table->columns(); ++column) {
                    QStringList cell;
                    describeFrame(table->cellAt(row, column).begin(), &cell);
                    paragraphs->append(u'[' + cell.join(u'\n') + u']');
                }
            }
        } else if (it.currentBlock().isValid()) {
            paragraphs->append(describeBlock(it.currentBlock()));
        }
    }
}

// --- Exact comparison

QMap<int, QVariant> propertiesOf(QTextFormat format)
{
    format.clearProperty(QTextFormat::ObjectIndex);
    return format.properties();
}

struct Run
{
    QString mText;
    QMap<int, QVariant> mProperties;

    friend bool operator==(const Run &, const Run &) = default;
};

QList<Run> runsOf(const QTextBlock &block)
{
    QList<Run> runs;
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const Run run = {it.fragment().text(), propertiesOf(it.fragment().charFormat())};
        if (!runs.isEmpty() && runs.constLast().mProperties == run.mProperties)
            runs.last().mText += run.mText;
        else
            runs.append(run);
    }
    return runs;
}

/** Lists and tables as numbers in the order of their first paragraph. */
class ObjectNumbers
{
public:
    int of(const QObject *object)
    {
        return object ? *mNumbers.tryEmplace(object, int(mNumbers.size()) + 1) : 0;
    }

private:
    struct Numbers : QHash<const QObject *, int>
    {
        iterator tryEmplace(const QObject *object, int number)
        {
            const auto known = find(object);
            return known == end() ? insert(object, number) : known;
        }
    } mNumbers;
};

QString placeOf(const QTextBlock &block, ObjectNumbers *numbers)
{
    QString place = u"list %1"_s.arg(numbers->of(block.textList()));
    if (block.textList())
        place += u" style %1"_s.arg(block.textList()->format().style());
    const QTextCursor cursor(block);
    place += u" frame %1"_s.arg(numbers->of(cursor.currentFrame()));
    if (const QTextTable *table = cursor.currentTable()) {
        const QTextTableCell cell = table->cellAt(cursor);
        place += u" cell %1,%2 of %3x%4 span %5x%6"_s.arg(cell.row())
                     .arg(cell.column())
                     .arg(table->rows())
                     .arg(table->columns())
                     .arg(cell.rowSpan())
                     .arg(cell.columnSpan());
    }
    return place;
}

// --- Random documents

class RandomMaker
{
public:
    RandomMaker(QTextDocument *document, quint32 seed)
        : mDocument(document)
        , mCursor(document)
        , mRandom(seed)
    {
    }

    void make()
    {
        mCursor.setBlockFormat(blockFormat());
        mCursor.setBlockCharFormat(charFormat());
        blocks(mRandom.bounded(6), 0);
    }

private:
    bool once(int in) { return mRandom.bounded(in) == 0; }

    void blocks(int count, int depth)
    {
        for (;; --count) {
            if (once(3))
                list();
            runs();
            if (depth < 2 && once(6))
                table(depth);
            if (count <= 0)
                return;
            mCursor.insertBlock(blockFormat(), charFormat());
        }
    }

    void runs()
    {
        for (int i = mRandom.bounded(4); i > 0; --i) {
            if (once(6))
                picture();
            else
                mCursor.insertText(
                    QString(1 + mRandom.bounded(4), QChar(u'a' + mRandom.bounded(26))),
                    charFormat());
        }
    }

    void list()
    {
        if (!mLists.isEmpty() && once(2)) {
            mLists.at(mRandom.bounded(int(mLists.size())))->add(mCursor.block());
            return;
        }
        QTextListFormat format;
        format.setStyle(once(2) ? QTextListFormat::ListDecimal : QTextListFormat::ListDisc);
        format.setIndent(1 + mRandom.bounded(3));
        mLists.append(mCursor.createList(format));
    }

    void table(int depth)
    {
        QTextTable *table = mCursor.insertTable(1 + mRandom.bounded(3), 1 + mRandom.bounded(3));
        if (once(2))
            table->mergeCells(0, 0, table->rows(), 1);
        for (int column = 0; column < table->columns(); ++column) {
            mCursor = table->cellAt(table->rows() - 1, column).firstCursorPosition();
            blocks(mRandom.bounded(3), depth + 1);
        }
        mCursor.setPosition(table->lastPosition() + 1);
    }

    void picture()
    {
        QTextImageFormat format;
        format.merge(charFormat());
        format.setName(u"picture %1"_s.arg(mRandom.bounded(5)));
        mDocument->addResource(QTextDocument::ImageResource, QUrl(format.name()),
                               QByteArray("bytes of ") + format.name().toUtf8());
        mCursor.insertImage(format);
    }

    QTextBlockFormat blockFormat()
    {
        QTextBlockFormat format;
        if (once(2))
            format.setIndent(mRandom.bounded(4));
        if (once(3))
            format.setAlignment(Qt::AlignRight);
        if (once(4))
            format.setHeadingLevel(1 + mRandom.bounded(3));
        return format;
    }

    QTextCharFormat charFormat()
    {
        QTextCharFormat format;
        if (once(3))
            format.setFontItalic(true);
        if (once(3))
            format.setFontPointSize(8 + mRandom.bounded(4));
        if (once(4))
            TVLTextFormat::setLink(&format, u"tavellnk://%1"_s.arg(mRandom.bounded(3)));
        if (once(4))
            TVLTextFormat::setComment(&format, {QString::number(mRandom.bounded(3)), "rtf"});
        if (once(4))
            format.setProperty(TVLTextFormat::InlineAnnotation, true);
        return format;
    }

    QTextDocument *mDocument;
    QTextCursor mCursor;
    QRandomGenerator mRandom;
    QList<QTextList *> mLists;
};

} // namespace

std::unique_ptr<QTextDocument> makeRandomRichText(quint32 seed)
{
    auto document = std::make_unique<QTextDocument>();
    document->setUndoRedoEnabled(false);
    RandomMaker(document.get(), seed).make();
    document->setUndoRedoEnabled(true);
    document->setModified(false);
    return document;
}

QTextCharFormat markedFormat(const QString &marks)
{
    QTextCharFormat format;
    for (const QString &mark : marks.split(u',')) {
        const QString rest = mark.mid(1);
        switch (mark.at(0).unicode()) {
        case u'a':
            format.setProperty(TVLTextFormat::InlineAnnotation, true);
            break;
        case u'f':
            format.setProperty(TVLTextFormat::InlineFootnote, true);
            break;
        case u'b':
            format.setFontWeight(QFont::Bold);
            break;
        case u'l':
            TVLTextFormat::setLink(&format, rest);
            break;
        case u'p':
            format.setObjectType(QTextFormat::ImageObject);
            break;
        default: {
            TVLTextCommentLink comment(rest, {});
            comment.mIsFootnote = mark.startsWith(u'n');
            TVLTextFormat::setComment(&format, comment);
        }
        }
    }
    return format;
}

std::unique_ptr<QTextDocument> makeText(const QString &notation)
{
    auto document = std::make_unique<QTextDocument>();
    QTextCursor cursor(document.get());
    for (qsizetype i = 0; i < notation.size();) {
        qsizetype end = notation.indexOf(u'<', i);
        if (end != i) {
            end = end < 0 ? notation.size() : end;
            cursor.insertText(notation.mid(i, end - i), QTextCharFormat());
            i = end;
            continue;
        }
        const qsizetype colon = i + 1 + notation.mid(i + 1).indexOf(u':');
        const bool isLink = notation.mid(colon).startsWith(u"://");
        const qsizetype textStart = 1 + (isLink ? notation.indexOf(u':', colon + 1) : colon);
        end = notation.indexOf(u'>', textStart);
        QTextCharFormat format = markedFormat(notation.mid(i + 1, textStart - i - 2));
        const QString text = notation.mid(textStart, end - textStart);
        if (format.objectType() == QTextFormat::ImageObject) {
            format.setProperty(QTextFormat::ImageName, text);
            cursor.insertImage(format.toImageFormat());
        } else {
            cursor.insertText(text, format);
        }
        i = end + 1;
    }
    document->clearUndoRedoStacks();
    document->setModified(false);
    return document;
}

QString describeText(const QTextDocument *document)
{
    QStringList paragraphs;
    describeFrame(document->rootFrame()->begin(), &paragraphs);
    return paragraphs.join(u'\n');
}

QString differenceOfTexts(const QTextDocument &a, const QTextDocument &b)
{
    ObjectNumbers numbersOfA;
    ObjectNumbers numbersOfB;
    int number = 0;
    QTextBlock blockOfA = a.begin();
    QTextBlock blockOfB = b.begin();
    for (; blockOfA.isValid() && blockOfB.isValid();
         blockOfA = blockOfA.next(), blockOfB = blockOfB.next(), ++number) {
        const QString paragraph = u"paragraph %1 '%2': "_s.arg(number).arg(blockOfA.text());
        if (blockOfA.text() != blockOfB.text())
            return paragraph + u"other text '%1'"_s.arg(blockOfB.text());
        if (propertiesOf(blockOfA.blockFormat()) != propertiesOf(blockOfB.blockFormat()))
            return paragraph + u"other format"_s;
        if (propertiesOf(blockOfA.charFormat()) != propertiesOf(blockOfB.charFormat()))
            return paragraph + u"other character format"_s;
        if (runsOf(blockOfA) != runsOf(blockOfB))
            return paragraph + u"other runs"_s;
        const QString placeInA = placeOf(blockOfA, &numbersOfA);
        const QString placeInB = placeOf(blockOfB, &numbersOfB);
        if (placeInA != placeInB)
            return paragraph + placeInA + u" against "_s + placeInB;
    }
    return a.blockCount() == b.blockCount() ? QString() : u"other number of paragraphs"_s;
}
