#include "TVLBrumbleOpmlParser.h"

#include "TVLDomDoc.h"
#include "TVLHeldDocument_p.h"
#include "TVLHeldItem_p.h"
#include "TVLOptions.h"
#include "TVLProjectModel.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QDebug>
#include <QDomElement>
#include <QFileInfo>
#include <QImage>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextDocumentFragment>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype LongestTitle = 100;

QString brumbleText(const char *text)
{
    return QCoreApplication::translate("TVLBrumbleOpmlParser", text);
}

/** What lies behind the paragraph that a position is in. */
QTextDocumentFragment behindParagraph(const QTextDocumentFragment &fragment, qsizetype position)
{
    QTextDocument scratch;
    scratch.setUndoRedoEnabled(false);
    QTextCursor cursor(&scratch);
    cursor.insertFragment(fragment);
    cursor.setPosition(int(std::min<qsizetype>(position, scratch.characterCount() - 1)));
    cursor.movePosition(QTextCursor::NextBlock);
    cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    return cursor.selection();
}

} // namespace

TVLBrumbleOpmlParser::TVLBrumbleOpmlParser(TVLProjectModel *model)
    : mModel(model)
{
}

TVLBrumbleOpmlParser::~TVLBrumbleOpmlParser() = default;

bool TVLBrumbleOpmlParser::parse(const QString &text, int row, const QModelIndex &parent)
{
    mErrorString.clear();
    if (!mModel)
        return read(row, TVLHeldItem());
    const int end = mModel->rowCount(parent);
    if (row > end)
        return false;
    mInsideDraft = mModel->isDraftChild(parent);
    mSplitFirstLine = tvlOptions()->value(TVLOptions::SplitFirstLineOfNotes);
    mDom = std::make_unique<TVLDomDoc>();
    if (!mDom->setContent(text)) {
        mErrorString = mDom->errorString()
            + brumbleText("Row: %1; Column: %2").arg(mDom->errorLine()).arg(mDom->errorColumn());
        qDebug() << mErrorString;
        return false;
    }
    const TVLProjectNode *node = mModel->projectNode(parent);
    return read(row < 0 ? end : row, TVLHeldItem(mModel, node ? node : mModel->binderRoot()));
}

bool TVLBrumbleOpmlParser::read(int row, const TVLHeldItem &parent)
{
    if (!mDom || !mModel) {
        mErrorString = brumbleText("No project/parser available");
        return false;
    }
    if (!mDom->cd(u"/opml"_s))
        return false;
    if (!mDom->cd(u"/opml/body"_s)) {
        mErrorString = brumbleText("Could not find 'body' tag");
        return false;
    }
    readOutlineContents(row, parent);
    return true;
}

/** Makes items of the outlines in the work element. */
void TVLBrumbleOpmlParser::readOutlineContents(int row, const TVLHeldItem &parent)
{
    const QString name = u"outline"_s;
    if (!mDom->cd(name))
        return;
    do {
        const QDomElement element = mDom->currentElement();
        if (readOutline(row, parent))
            ++row;
        mDom->setWorkElement(element);
    } while (mDom->cdNext(name));
}

/** Makes an item of the work element; whether there is one. */
bool TVLBrumbleOpmlParser::readOutline(int row, const TVLHeldItem &parent)
{
    // It may have gone at the signals of the last one.
    if (!parent.node())
        return false;
    QString text;
    bool hasText = false;
    mDom->find(u"text"_s);
    mDom->getAttr(&text, QString(), &hasText);
    QString type;
    bool hasType = false;
    mDom->find(u"type"_s);
    mDom->getAttr(&type, QString(), &hasType);
    // Others may have removed what stood before it.
    row = std::min(row, mModel->rowCount(parent.index()));
    if (type == u"image")
        return readImage(text, row, parent);
    if (type == u"text")
        return hasText && readNote(text, row, parent);
    return !hasType && text.startsWith(u"Group") && readGroup(text, row, parent);
}

bool TVLBrumbleOpmlParser::readImage(const QString &name, int row, const TVLHeldItem &parent)
{
    QImage image;
    QDataStream stream(elementData());
    stream >> image;
    return !image.isNull() && createImage(name, image, row, parent);
}

bool TVLBrumbleOpmlParser::readNote(const QString &text, int row, const TVLHeldItem &parent)
{
    QString html;
    QDataStream stream(elementData());
    stream >> html;
    return createNote(text, html, row, parent);
}

bool TVLBrumbleOpmlParser::readGroup(const QString &title, int row, const TVLHeldItem &parent)
{
    const TVLHeldItem folder = createFolder(title, row, parent);
    if (!folder.node())
        return false;
    readOutlineContents(0, folder);
    return true;
}

/** The bytes that the work element's text stands for. */
QByteArray TVLBrumbleOpmlParser::elementData() const
{
    QString text;
    mDom->get(&text);
    return QByteArray::fromBase64(text.toLatin1());
}

// --- Items

TVLHeldItem TVLBrumbleOpmlParser::createFolder(const QString &title, int row,
                                               const TVLHeldItem &parent)
{
    const QModelIndex index = mModel->insertUserFolder(row, parent.index(), title);
    return index.isValid() ? TVLHeldItem(mModel, mModel->projectNode(index)) : TVLHeldItem();
}

bool TVLBrumbleOpmlParser::createImage(const QString &name, const QImage &image, int row,
                                       const TVLHeldItem &parent)
{
    // Pictures are no items in the Draft.
    if (mInsideDraft)
        return false;
    mModel->insertImageNode(row, parent.index(), QFileInfo(name).baseName(), image, QString(),
                            QString());
    return true;
}

bool TVLBrumbleOpmlParser::createNote(const QString &text, const QString &html, int row,
                                      const TVLHeldItem &parent)
{
    const QTextDocumentFragment fragment = html.isEmpty()
        ? QTextDocumentFragment::fromPlainText(text)
        : QTextDocumentFragment::fromHtml(html);
    const qsizetype lineEnd = text.indexOf(u'\n');
    const bool isSplit = mSplitFirstLine && lineEnd >= 0;
    QString title = text.first(lineEnd < 0 ? text.size() : lineEnd);
    if (!isSplit)
        title.truncate(LongestTitle);
    const QModelIndex index =
        mModel->insertTextNode(row, parent.index(), title, QString(), QString(), QString());
    if (!index.isValid())
        return true;
    const TVLHeldDocument document(mModel, index, TVL::MainText);
    // The title isn't repeated.
    if (document)
        QTextCursor(document.get())
            .insertFragment(isSplit ? behindParagraph(fragment, lineEnd) : fragment);
    return true;
}
