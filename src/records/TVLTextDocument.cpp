#include "TVLTextDocument.h"

#include "TVLProjectNode.h"
#include "TVLTextFormat.h"

#include <QAbstractTextDocumentLayout>
#include <QPointer>
#include <QTextBlockFormat>
#include <QTextCursor>

#include <utility>

namespace {

/**
 * The layout of a text that nobody looks at. Without any layout a text document doesn't tell what
 * an edit has changed, and a real one would cost more than all else about a loaded text.
 *
 * An editor puts its own layout in this one's place. A view that brings none gets Qt's as soon as
 * it has asked for something that can be seen, and so does a document whose layout is taken away.
 */
class UnseenLayout : public QAbstractTextDocumentLayout
{
public:
    using QAbstractTextDocumentLayout::QAbstractTextDocumentLayout;

    void draw(QPainter *painter, const PaintContext &context) override
    {
        Q_UNUSED(painter)
        Q_UNUSED(context)
        giveWay();
    }
    int hitTest(const QPointF &point, Qt::HitTestAccuracy accuracy) const override
    {
        Q_UNUSED(point)
        Q_UNUSED(accuracy)
        return -1;
    }
    int pageCount() const override { return 1; }
    QSizeF documentSize() const override
    {
        giveWay();
        return QSizeF(0, 0);
    }
    QRectF frameBoundingRect(QTextFrame *frame) const override
    {
        Q_UNUSED(frame)
        return {};
    }
    QRectF blockBoundingRect(const QTextBlock &block) const override
    {
        Q_UNUSED(block)
        return {};
    }

protected:
    void documentChanged(int from, int charsRemoved, int charsAdded) override
    {
        Q_UNUSED(from)
        Q_UNUSED(charsRemoved)
        Q_UNUSED(charsAdded)
    }

private:
    void giveWay() const
    {
        if (std::exchange(mGivesWay, true))
            return;
        // Not at once, because whoever asks still holds this layout; and not if an editor was
        // quicker.
        const auto takePlace = [document = document(), layout = QPointer(this)] {
            if (document->documentLayout() != layout)
                return;
            document->setDocumentLayout(nullptr);
        };
        QMetaObject::invokeMethod(document(), takePlace, Qt::QueuedConnection);
    }

    mutable bool mGivesWay = false;
};

} // namespace

TVLTextDocument::TVLTextDocument(QObject *parent, TVLProjectModel *model, TVLProjectNode *node,
                                 TVL::DocumentType type)
    : QTextDocument(parent)
    , mModel(model)
    , mNode(node)
    , mDocumentType(type)
{
    init();
}

TVLTextDocument::TVLTextDocument(QObject *parent)
    : QTextDocument(parent)
{
    init();
}

void TVLTextDocument::init()
{
    setDocumentLayout(new UnseenLayout(this));
    connect(this, &QTextDocument::documentLayoutChanged, this, [this] {
        ++mNewLayouts;
        // It may have been taken away; asking for it makes one.
        documentLayout();
    });
}

bool TVLTextDocument::isChangeOfLayout(int position, int charsRemoved, int charsAdded)
{
    if (mNewLayouts == 0)
        return false;
    // Counted, because a view may answer a new layout by setting one itself.
    --mNewLayouts;
    return position == 0 && charsRemoved == 0 && charsAdded == characterCount();
}

void TVLTextDocument::detach()
{
    mModel = nullptr;
    mNode = nullptr;
    mIndex = QPersistentModelIndex();
}

bool TVLTextDocument::isReadOnly() const
{
    return mReadOnly || (mNode && mNode->mId < 0);
}

bool TVLTextDocument::takesComments() const
{
    return mDocumentType == TVL::MainText && !isReadOnly();
}

void TVLTextDocument::convertTextToDefaultFormat()
{
    const QTextCharFormat format = TVLTextFormat::defaultCharFormat();
    QTextCursor cursor(this);
    cursor.beginEditBlock();
    cursor.select(QTextCursor::Document);
    cursor.setBlockFormat(QTextBlockFormat());
    cursor.setBlockCharFormat(format);
    cursor.setCharFormat(format);
    cursor.endEditBlock();
}

void TVLTextDocument::updateEditorLayout()
{
    TVLTextFormat::setDefaultCharFormat(this);
}

void TVLTextDocument::reflectSettings(const QStringList &groups)
{
    if (groups.contains(u"TextEditing"))
        updateEditorLayout();
}
