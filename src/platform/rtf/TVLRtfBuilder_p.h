#pragma once

#include "TVLRtfListItems_p.h"

#include <QList>
#include <QString>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextListFormat>
#include <QTextTableFormat>

#include <memory>
#include <variant>
#include <vector>

class QTextDocument;

/** A paragraph that has been read to its end. */
struct TVLRtfParagraph
{
    struct Run
    {
        int mLength;
        int mFormat; ///< Place in the character formats.
    };

    QString mText;
    std::vector<Run> mRuns;
    QTextBlockFormat mBlockFormat;
    int mBlockCharFormat = 0; ///< Place in the character formats.
    int mList = -1; ///< Place in the builder's lists; -1 for none.
};

struct TVLRtfTable;

/** What a cell of a table holds: paragraphs and tables in turn. */
using TVLRtfCellItem = std::variant<TVLRtfParagraph, std::unique_ptr<TVLRtfTable>>;

struct TVLRtfCell
{
    std::vector<TVLRtfCellItem> mItems;

    /** Whether there is more than one empty paragraph. */
    [[nodiscard]] bool hasContent() const;
};

/** What a row says of one of its cells. */
struct TVLRtfCellProperties
{
    int mEdge = 0; ///< Right edge in twentieths of a point.
    int mBackground = 0; ///< Place in the colour table.
    int mVerticalAlignment = 0; ///< A QTextCharFormat::VerticalAlignment.
    int mConstraintType = -1; ///< A QTextLength::Type; -1 when only the edge is known.
    int mConstraintValue = 0; ///< Hundredths.
    bool mMergeNext = false; ///< Belongs to the cell on the left.
    bool mMergeDownNext = false; ///< Belongs to the cell above.
};

struct TVLRtfRowProperties
{
    std::vector<TVLRtfCellProperties> mCells;
    int mLeft = 0;
    int mAlignment = 0; ///< A Qt::AlignmentFlag.
    int mBorder = -1; ///< Twentieths of a point; -1 when only the cells' borders are known.
    int mBorderStyle = -1;
    int mBorderColor = 0;
    int mPadding = -1;
    int mSpacing = -1;
    int mBackground = 0;
    int mWidthType = -1;
    int mWidthValue = 0;
    int mBorderSeen = 0; ///< The widest border of a cell.
    bool mHeader = false;
};

struct TVLRtfRow
{
    TVLRtfRowProperties mProperties;
    std::vector<TVLRtfCell> mCells;
};

struct TVLRtfTable
{
    std::vector<TVLRtfRow> mRows;
};

class TVLRtfFormats;

/** Puts what was read into a document, from its start to its end, as one edit. */
class TVLRtfBuilder
{
public:
    /** The document is cleared. Neither is owned. */
    TVLRtfBuilder(QTextDocument *document, const TVLRtfFormats *formats);
    ~TVLRtfBuilder();
    Q_DISABLE_COPY_MOVE(TVLRtfBuilder)

    /** A list to which paragraphs can be added; its place among the builder's lists. */
    [[nodiscard]] int addList(const QTextListFormat &format);
    void addParagraph(const TVLRtfParagraph &paragraph);
    void addTable(const TVLRtfTable &table);
    void addImage(const QString &name, const QByteArray &bytes);

private:
    struct List
    {
        QTextListFormat mFormat;
        TVLRtfListItems mItems; ///< The list is made with the first of them; the document owns it.
    };

    void insertParagraph(const TVLRtfParagraph &paragraph);
    void insertTable(const TVLRtfTable &table);
    void insertItems(const std::vector<TVLRtfCellItem> &items);
    void insertRuns(const TVLRtfParagraph &paragraph);
    /** Where the document has a format of characters. */
    [[nodiscard]] int indexInDocument(int format);

    QTextDocument *mDocument;
    const TVLRtfFormats *mFormats;
    QTextCursor mCursor;
    std::vector<List> mLists;
    std::vector<int> mIndexesInDocument; ///< By place in the character formats.
    bool mHasOpenBlock = true; ///< Whether the cursor's block waits for its paragraph.
};
