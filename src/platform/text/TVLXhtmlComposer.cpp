#include "TVLXhtmlComposer_p.h"

#include "TTextDoc.h"
#include "TVLTextFormat.h"
#include "TVLXhtmlStyles_p.h"
#include "TVLXmlText_p.h"

#include <QTextBlock>
#include <QTextDocument>
#include <QTextList>
#include <QTextTable>
#include <QUrl>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

/** A name in a document as an id in a page, which has no blanks. */
QString idOfPlace(const QString &name)
{
    return tvlXmlText(name).simplified().replace(u' ', u'_');
}

} // namespace

TVLXhtmlComposer::TVLXhtmlComposer(const QTextDocument *document, QXmlStreamWriter *writer,
                                   Options options)
    : mDocument(document)
    , mWriter(writer)
    , mOptions(std::move(options))
    , mFootnotes{u"footnote"_s, {}}
    , mComments{u"comment"_s, {}}
{
    QTextBlockFormat ignored;
    TTextDoc::findMostCommonProperties(document, &mCommon, &ignored);
}

void TVLXhtmlComposer::compose()
{
    lineEnd();
    if (mDocument)
        frameContent(mDocument->rootFrame()->begin());
    noteList(mFootnotes);
    noteList(mComments);
}

void TVLXhtmlComposer::lineEnd()
{
    mWriter->writeCharacters(u"\n"_s);
}

void TVLXhtmlComposer::close()
{
    // HTML knows no `<p/>`: an element of nothing needs its end, which any characters bring about.
    mWriter->writeCharacters(QString());
    mWriter->writeEndElement();
}

void TVLXhtmlComposer::style(const QString &css)
{
    if (!css.isEmpty())
        mWriter->writeAttribute(u"style"_s, css);
}

// --- Frames and tables

void TVLXhtmlComposer::frameContent(QTextFrame::iterator it)
{
    // Lists don't reach over the edge of a frame.
    const QList<OpenList> outside = std::exchange(mLists, {});
    for (; !it.atEnd(); ++it) {
        if (const QTextFrame *child = it.currentFrame())
            frame(child);
        else
            block(it.currentBlock());
    }
    closeLists(0);
    mLists = outside;
}

void TVLXhtmlComposer::frame(const QTextFrame *frame)
{
    closeLists(0);
    if (const auto *table = qobject_cast<const QTextTable *>(frame)) {
        this->table(table);
        return;
    }
    open(u"div"_s);
    lineEnd();
    frameContent(frame->begin());
    close();
    lineEnd();
}

void TVLXhtmlComposer::table(const QTextTable *table)
{
    const auto beginsAt = [table](int row, int column) {
        const QTextTableCell cell = table->cellAt(row, column);
        return cell.row() == row && cell.column() == column; // Or one that spans it stands there.
    };
    // Rows of nothing but parts of cells above are none in a page.
    QList<int> rows;
    for (int row = 0; row < table->rows(); ++row) {
        int column = 0;
        while (column < table->columns() && !beginsAt(row, column))
            ++column;
        if (column < table->columns())
            rows.append(row);
    }
    open(u"table"_s);
    lineEnd();
    for (const int row : std::as_const(rows)) {
        open(u"tr"_s);
        for (int column = 0; column < table->columns(); ++column) {
            if (!beginsAt(row, column))
                continue;
            const QTextTableCell cell = table->cellAt(row, column);
            const auto height = std::lower_bound(rows.cbegin(), rows.cend(), row + cell.rowSpan())
                - std::lower_bound(rows.cbegin(), rows.cend(), row);
            tableCell(cell, row < table->format().headerRowCount(), int(height));
        }
        close();
        lineEnd();
    }
    close();
    lineEnd();
}

void TVLXhtmlComposer::tableCell(const QTextTableCell &cell, bool isHeader, int height)
{
    open(isHeader ? u"th"_s : u"td"_s);
    if (cell.columnSpan() > 1)
        mWriter->writeAttribute(u"colspan"_s, QString::number(cell.columnSpan()));
    if (height > 1)
        mWriter->writeAttribute(u"rowspan"_s, QString::number(height));
    style(tvlCssOfCell(cell.format().toTableCellFormat()));
    frameContent(cell.begin());
    close();
}

// --- Paragraphs and lists

void TVLXhtmlComposer::block(const QTextBlock &block)
{
    if (const QTextList *list = block.textList()) {
        listItem(block, list);
        return;
    }
    closeLists(0);
    paragraph(block);
}

void TVLXhtmlComposer::paragraph(const QTextBlock &block)
{
    const int level = block.blockFormat().headingLevel();
    open(level > 0 ? u"h%1"_s.arg(std::min(level, 6)) : u"p"_s);
    blockAttributes(block, false);
    runs(block);
    close();
    lineEnd();
}

void TVLXhtmlComposer::blockAttributes(const QTextBlock &block, bool isInList)
{
    if (block.blockFormat().layoutDirection() == Qt::RightToLeft)
        mWriter->writeAttribute(u"dir"_s, u"rtl"_s);
    style(tvlCssOf(block.blockFormat(), isInList));
}

void TVLXhtmlComposer::listItem(const QTextBlock &block, const QTextList *list)
{
    const int indent = list->format().indent();
    const auto isOutside = [list, indent](const OpenList &open) {
        return open.list == list || open.indent < indent;
    };
    while (!mLists.isEmpty() && !isOutside(mLists.constLast()))
        closeLists(mLists.size() - 1);
    if (!mLists.isEmpty() && mLists.constLast().list == list)
        close(); // The item before.
    else
        openList(block, list);
    open(u"li"_s);
    blockAttributes(block, true);
    runs(block);
}

void TVLXhtmlComposer::openList(const QTextBlock &block, const QTextList *list)
{
    struct Kind
    {
        QTextListFormat::Style style;
        bool isNumbered;
        QStringView css;
    };
    constexpr std::array Kinds = {
        Kind{QTextListFormat::ListDisc, false, u"disc"},
        Kind{QTextListFormat::ListCircle, false, u"circle"},
        Kind{QTextListFormat::ListSquare, false, u"square"},
        Kind{QTextListFormat::ListDecimal, true, u"decimal"},
        Kind{QTextListFormat::ListLowerAlpha, true, u"lower-alpha"},
        Kind{QTextListFormat::ListUpperAlpha, true, u"upper-alpha"},
        Kind{QTextListFormat::ListLowerRoman, true, u"lower-roman"},
        Kind{QTextListFormat::ListUpperRoman, true, u"upper-roman"},
    };
    const QTextListFormat format = list->format();
    const auto *kind = std::find_if(Kinds.begin(), Kinds.end(), [&format](const Kind &known) {
        return known.style == format.style();
    });
    if (kind == Kinds.end())
        kind = Kinds.begin();
    open(kind->isNumbered ? u"ol"_s : u"ul"_s);
    const int start = format.hasProperty(TVLTextFormat::ListStart)
        ? format.intProperty(TVLTextFormat::ListStart)
        : 1;
    // A list that goes on behind other text has its next number there.
    if (const int first = start + list->itemNumber(block); kind->isNumbered && first != 1)
        mWriter->writeAttribute(u"start"_s, QString::number(first));
    style(u"list-style-type: %1;"_s.arg(kind->css));
    mLists.append({list, format.indent()});
}

void TVLXhtmlComposer::closeLists(qsizetype kept)
{
    while (mLists.size() > kept) {
        close(); // The item.
        close();
        mLists.removeLast();
        if (mLists.isEmpty())
            lineEnd();
    }
}

// --- Runs of text

void TVLXhtmlComposer::runs(const QTextBlock &block)
{
    if (block.length() <= 1) // A paragraph of nothing has no height of its own.
        mWriter->writeEmptyElement(u"br"_s);
    for (auto it = block.begin(); !it.atEnd(); ++it)
        run(it.fragment());
    endInlineFootnote();
    commentsThatEnd({});
    closeLink();
}

void TVLXhtmlComposer::run(const QTextFragment &fragment)
{
    const QTextCharFormat format = fragment.charFormat();
    commentsThatEnd(format);
    if (format.boolProperty(TVLTextFormat::InlineFootnote)) {
        closeLink();
        mFootnote.append(fragment);
        return;
    }
    endInlineFootnote();
    const QString address = addressOf(format);
    if (address != mLink)
        closeLink();
    if (!address.isEmpty() && mLink.isEmpty())
        openLink(address);
    placeNames(format);
    formattedText(fragment);
    mComment =
        TVLTextFormat::hasComment(format) ? TVLTextFormat::comment(format) : TVLTextCommentLink();
}

void TVLXhtmlComposer::formattedText(const QTextFragment &fragment)
{
    const QTextCharFormat format = fragment.charFormat();
    if (format.isImageFormat()) {
        for (qsizetype i = fragment.text().size(); i > 0; --i)
            picture(format);
        return;
    }
    const int depth = openEmphasis(format);
    text(fragment.text());
    for (int i = 0; i < depth; ++i)
        close();
}

int TVLXhtmlComposer::openEmphasis(const QTextCharFormat &format)
{
    int depth = 0;
    const auto openIf = [this, &depth](bool isWanted, const QString &element) {
        if (!isWanted)
            return false;
        open(element);
        ++depth;
        return true;
    };
    if (openIf(format.boolProperty(TVLTextFormat::InlineAnnotation), u"span"_s))
        mWriter->writeAttribute(u"class"_s, u"annotation"_s);
    if (openIf(format.boolProperty(TVLTextFormat::Hidden), u"span"_s))
        mWriter->writeAttribute(u"hidden"_s, u"hidden"_s);
    if (const QString css = tvlCssOf(format, mCommon); openIf(!css.isEmpty(), u"span"_s))
        style(css);
    openIf(format.fontWeight() > QFont::Medium, u"b"_s);
    openIf(format.fontItalic(), u"i"_s);
    const bool isUnderlined = format.fontUnderline()
        || (format.underlineStyle() != QTextCharFormat::NoUnderline
            && format.underlineStyle() != QTextCharFormat::SpellCheckUnderline);
    openIf(isUnderlined && mLink.isEmpty(), u"u"_s);
    openIf(format.fontStrikeOut(), u"s"_s);
    openIf(format.verticalAlignment() == QTextCharFormat::AlignSuperScript, u"sup"_s);
    openIf(format.verticalAlignment() == QTextCharFormat::AlignSubScript, u"sub"_s);
    return depth;
}

void TVLXhtmlComposer::text(const QString &text)
{
    const QString clean = tvlXmlText(text);
    qsizetype start = 0;
    const auto write = [this, &clean, &start](qsizetype end) {
        if (end > start)
            mWriter->writeCharacters(clean.sliced(start, end - start));
        start = end + 1;
    };
    for (qsizetype i = 0; i < clean.size(); ++i) {
        const char16_t ch = clean.at(i).unicode();
        if (ch == QChar::LineSeparator || ch == u'\n') {
            write(i);
            mWriter->writeEmptyElement(u"br"_s);
        } else if (ch == QChar::ObjectReplacementCharacter || (ch >= 0x7f && ch < 0xa0)) {
            write(i);
        }
    }
    write(clean.size());
}

void TVLXhtmlComposer::picture(const QTextCharFormat &format)
{
    const QTextImageFormat image = format.toImageFormat();
    const QString address = mOptions.mPictureAddress(image.name());
    const QString words = tvlXmlText(format.property(QTextFormat::ImageAltText).toString());
    if (address.isEmpty()) {
        text(words);
        return;
    }
    mWriter->writeEmptyElement(u"img"_s);
    mWriter->writeAttribute(u"src"_s, address);
    mWriter->writeAttribute(u"alt"_s, words);
    if (const int width = qRound(image.width()); width > 0)
        mWriter->writeAttribute(u"width"_s, QString::number(width));
    if (const int height = qRound(image.height()); height > 0)
        mWriter->writeAttribute(u"height"_s, QString::number(height));
}

// --- Links and places

QString TVLXhtmlComposer::addressOf(const QTextCharFormat &format) const
{
    if (!format.isAnchor())
        return {};
    const QString address = format.anchorHref();
    if (TVLTextFormat::isTavelinorLink(address))
        return mOptions.mLinkTargets.value(address);
    return address.startsWith(TVLTextFormat::commentPrefix()) ? QString() : address;
}

void TVLXhtmlComposer::openLink(const QString &address)
{
    open(u"a"_s);
    const QString href = address.startsWith(u'#')
        ? u'#' + idOfPlace(address.sliced(1))
        : QString::fromUtf8(QUrl(tvlXmlText(address), QUrl::TolerantMode).toEncoded());
    mWriter->writeAttribute(u"href"_s, href);
    mLink = address;
}

void TVLXhtmlComposer::closeLink()
{
    if (!mLink.isEmpty())
        close();
    mLink.clear();
}

void TVLXhtmlComposer::placeNames(const QTextCharFormat &format)
{
    const QStringList names = format.anchorNames();
    for (const QString &name : names) {
        const QString id = idOfPlace(name);
        if (id.isEmpty() || mPlaces.contains(id))
            continue;
        mPlaces.insert(id);
        open(u"span"_s);
        mWriter->writeAttribute(u"id"_s, id);
        close();
    }
}
