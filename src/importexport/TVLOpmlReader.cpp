#include "TVLOpmlReader.h"

#include "TVLDomDoc.h"
#include "TVLHeldItem_p.h"
#include "TVLProjectModel.h"
#include "TVLRegularFile.h"

#include <QCoreApplication>
#include <QDomElement>

using namespace Qt::StringLiterals;

namespace {

// A paragraph in another one has its words there too, and they are told twice. So often, in files
// that are made to grow, that nobody needs it any more.
constexpr int DeepestParagraph = 16;

QString opmlText(const char *text)
{
    return QCoreApplication::translate("TVLOpmlReader", text);
}

/** Adds a line for each paragraph of a page. */
void appendParagraphs(const QDomElement &page, int depth, QString *lines)
{
    for (QDomElement element = page.firstChildElement(); !element.isNull();
         element = element.nextSiblingElement()) {
        const bool isParagraph = element.tagName() == u"p";
        if (isParagraph && depth < DeepestParagraph)
            *lines += element.text().simplified() + u'\n';
        appendParagraphs(element, depth + (isParagraph ? 1 : 0), lines);
    }
}

} // namespace

TVLOpmlReader::TVLOpmlReader(TVLProjectModel *model)
    : mModel(model)
{
}

TVLOpmlReader::~TVLOpmlReader()
{
    clear();
}

bool TVLOpmlReader::read(const QString &path, TVL::OpmlImportType type, bool createRoot,
                         const QModelIndex &parent, int row)
{
    if (!mModel)
        return false;
    mImportType = type;
    mCreateRoot = createRoot;
    return load(path) && parseFile(parent, row);
}

bool TVLOpmlReader::read(const QString &path, const QModelIndex &parent, int row, QString *error)
{
    const bool isRead = read(path, TVL::OpmlNoteAsText, false, parent, row);
    if (error)
        *error = mErrorString;
    return isRead;
}

bool TVLOpmlReader::load(const QString &path)
{
    TVLRegularFile file(path);
    if (file.open(QIODevice::ReadOnly))
        return load(&file);
    clear();
    mErrorString = file.errorString();
    return false;
}

bool TVLOpmlReader::load(QIODevice *device)
{
    mDom = std::make_unique<TVLDomDoc>();
    const bool isRead = mDom->setContent(device);
    mErrorString = mDom->errorString();
    return isRead;
}

void TVLOpmlReader::clear()
{
    mDom.reset();
}

bool TVLOpmlReader::parseFile(const QModelIndex &parent, int row)
{
    mFileKind = UnknownFile;
    if (mDom && mDom->cd(u"/opml"_s))
        mFileKind = OpmlFile;
    else if (mDom && mDom->cd(u"/map"_s))
        mFileKind = FreeMindFile;
    if (!mModel || mFileKind == UnknownFile) {
        mErrorString = opmlText("Unknown or invalid file");
        return false;
    }
    const TVLProjectNode *node = mModel->projectNode(parent);
    const TVLHeldItem target(mModel, node ? node : mModel->binderRoot());
    if (mFileKind == OpmlFile)
        parseOpml(target, row);
    else
        parseFreemind(target, row);
    return true;
}

// --- The two kinds of file

void TVLOpmlReader::parseOpml(const TVLHeldItem &parent, int row)
{
    const QString outlines = u"/opml/body/outline"_s;
    if (mCreateRoot)
        parseNodes(outlines, createRootFolder(parent, row), -1);
    else
        parseNodes(outlines, parent, row);
}

TVLHeldItem TVLOpmlReader::createRootFolder(const TVLHeldItem &parent, int row)
{
    QString title;
    if (mDom->cd(u"/opml/head/title"_s))
        mDom->get(&title);
    TVLHeldItem folder = createNode(title, QString(), parent, row);
    if (folder.node())
        mModel->setType(folder.index(), TVL::Folder);
    return folder;
}

void TVLOpmlReader::parseFreemind(const TVLHeldItem &parent, int row)
{
    const bool hasRoot = mDom->cd(u"/map/node/"_s);
    const TVLHeldItem root = createNode(hasRoot ? nodeTitle() : QString(),
                                        hasRoot ? nodeNote() : QString(), parent, row);
    parseNodes(u"/map/node/node"_s, root, -1);
}

/** Makes items of the elements at a path, with what is in them. */
void TVLOpmlReader::parseNodes(const QString &path, const TVLHeldItem &parent, int row)
{
    if (!mDom->cd(path))
        return;
    do
        parseNode(parent, row);
    while (mDom->cdNext(path));
}

/** Makes an item of the work element, with what is in it. */
void TVLOpmlReader::parseNode(const TVLHeldItem &parent, int row)
{
    const QDomElement element = mDom->currentElement();
    const TVLHeldItem item = createNode(nodeTitle(), nodeNote(), parent, row);
    if (element.hasChildNodes())
        parseChildren(item);
    mDom->setWorkElement(element);
}

void TVLOpmlReader::parseChildren(const TVLHeldItem &parent)
{
    const QStringView name = mFileKind == OpmlFile ? u"outline" : u"node";
    for (QDomElement child = mDom->currentChild(); !child.isNull();
         child = child.nextSiblingElement()) {
        if (child.tagName() != name)
            continue;
        mDom->setWorkElement(child);
        parseNode(parent, -1);
    }
}

// --- One node

TVLHeldItem TVLOpmlReader::createNode(const QString &title, QString noteText,
                                      const TVLHeldItem &parent, int row)
{
    // It may have gone at the signals of the last one.
    if (!parent.node())
        return {};
    noteText = mImportType == TVL::OpmlTitlesOnly ? QString() : noteText.trimmed();
    if (mFileKind == OpmlFile)
        noteText.replace(u"&#10;"_s, u"\n"_s);
    const QModelIndex parentIndex = parent.index();
    const int end = mModel->rowCount(parentIndex);
    const QString body = mImportType == TVL::OpmlNoteAsText ? noteText : QString();
    const QString notes = mImportType == TVL::OpmlNoteAsNotes ? noteText : QString();
    const QModelIndex index = mModel->insertTextNode(row < 0 || row > end ? end + 1 : row,
                                                     parentIndex, title, body, noteText, notes);
    return index.isValid() ? TVLHeldItem(mModel, mModel->projectNode(index)) : TVLHeldItem();
}

/** The title that the work element has for its item. */
QString TVLOpmlReader::nodeTitle() const
{
    return attribute(mFileKind == OpmlFile ? u"text"_s : u"TEXT"_s);
}

QString TVLOpmlReader::nodeNote() const
{
    return mFileKind == OpmlFile ? attribute(u"_note"_s) : parseFreemindNotes();
}

QString TVLOpmlReader::attribute(const QString &name) const
{
    QString value;
    mDom->find(name);
    mDom->getAttr(&value);
    return value;
}

QString TVLOpmlReader::parseFreemindNotes() const
{
    QString lines;
    for (QDomElement element = mDom->currentChild(); !element.isNull();
         element = element.nextSiblingElement()) {
        if (element.tagName() == u"richcontent")
            appendParagraphs(element, 0, &lines);
    }
    return lines;
}
