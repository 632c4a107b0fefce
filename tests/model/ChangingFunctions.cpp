#include "ChangingFunctions.h"

#include "TVLCoreUtil.h"
#include "TVLKeywordModel.h"
#include "TVLSearchIndex.h"
#include "TVLSnapshotInfo.h"
#include "TVLTextCommentLink.h"
#include "TVLTextDocument.h"
#include "TVLTextRange.h"

#include <QDir>
#include <QImage>
#include <QMimeData>
#include <QTextCursor>
#include <QTextDocument>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

using Project = ChangingProject;
using Items = QModelIndexList;

QImage somePicture()
{
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

TVLReference someReference(const QString &title)
{
    TVLReference reference;
    reference.mTitle = title;
    reference.mUrl = QUrl(u"https://example.org/"_s + title);
    return reference;
}

TVLCollectionMetaData listOf(const TVLProjectModel *model, const QString &title)
{
    TVLCollectionMetaData collection;
    collection.mId = title;
    collection.mTitle = title;
    collection.mType = TVL::ArbitraryCollection;
    collection.mIds = model->nodeIdentityList(itemsTitled(model, u"a b c"_s));
    return collection;
}

TVLCollectionMetaData savedSearch(const QString &text)
{
    TVLCollectionMetaData collection;
    collection.mId = text;
    collection.mTitle = text;
    collection.mType = TVL::SavedSearchCollection;
    collection.mSearchText = text;
    collection.mSearchScope = TVL::ExcludeTrashScope;
    return collection;
}

void addText(TVLProjectModel *model, const QModelIndex &parent, const QString &title)
{
    // Copying files is most of what a test of all functions takes.
    const QString card = title == u"a" || title == u"e" ? title + u" card"_s : QString();
    model->insertTextNode(-1, parent, title, title + u" text"_s, card, QString());
}

void fill(TVLProjectModel *model)
{
    for (const QString &title : {u"a"_s, u"e"_s})
        addText(model, model->draftFolder(), title);
    for (const QString &title : {u"b"_s, u"d"_s})
        addText(model, itemTitled(model, u"a"_s), title);
    addText(model, itemTitled(model, u"b"_s), u"c"_s);
    addText(model, model->researchFolder(), u"f"_s);
    for (const QString &title : {u"g"_s, u"h"_s})
        addText(model, itemTitled(model, u"f"_s), title);
    model->insertImageNode(-1, model->researchFolder(), u"p"_s, somePicture(), u"p card"_s, {});

    TVLCustomMetaDataSettings fields;
    for (const QString &id : {u"place"_s, u"time"_s})
        fields.append({id, id, false, QColor()});
    model->setCustomMetaDataSettings(fields);
    model->addCustomIcon(u"flag"_s, somePicture());
    const QStringList titles = {u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"f"_s, u"g"_s};
    for (const QString &title : titles) {
        const QModelIndex index = itemTitled(model, title);
        model->setKeywords(index, {u"red"_s, u"blue"_s});
        model->setLabelIdentity(index, 1);
        model->setStatusIdentity(index, 2);
        model->setCustomMetaData(index, u"place"_s, u"sea"_s);
        model->setReferences(index, {someReference(title)});
        model->setCustomIcon(index, u"flag"_s);
        model->addToFavorites(index, true);
    }
    for (const QModelIndex &index : itemsTitled(model, u"a f"_s))
        model->addSnapshot(index, u"first"_s);
    model->keywordModel()->insertItem(0, model->keywordModel()->findTitle(u"red"_s), u"rose"_s);
    model->setTemplateFolder(itemTitled(model, u"a"_s));
    model->setCollections(
        {listOf(model, u"mine"_s), savedSearch(u"text"_s), listOf(model, u"yours"_s)});
    model->addProjectNote(u"one"_s);
    model->addProjectNote(u"two"_s);
}

void fillOther(TVLProjectModel *model)
{
    addText(model, model->researchFolder(), u"x"_s);
    for (const QString &title : {u"y"_s, u"z"_s})
        addText(model, itemTitled(model, u"x"_s), title);
    QList<TVLLabel> labels = model->labels();
    QList<TVLStatusItem> items = model->statusItems();
    for (const QString &title : {u"x"_s, u"y"_s, u"z"_s}) {
        const int id = int(labels.size()) + 20;
        labels.append({id, title + u" label"_s, QColor(Qt::green)});
        items.append({id, title + u" status"_s});
        model->setLabels(labels);
        model->setStatusItems(items);
        const QModelIndex index = itemTitled(model, title);
        model->setLabelIdentity(index, id);
        model->setStatusIdentity(index, id);
        model->setKeywords(index, {title + u" keyword"_s, u"shared"_s});
        model->setReferences(index, {someReference(title)});
    }
}

/** A project on disk that others are copied from. */
const QString &original(bool isOther)
{
    const auto make = [](void (*fillProject)(TVLProjectModel *)) {
        auto project = std::make_unique<TestProject>();
        const auto model = project->create();
        fillProject(model.get());
        model->saveAll(true);
        model->prepareToDestroy();
        return project;
    };
    static const std::unique_ptr<TestProject> projects[] = {make(fill), make(fillOther)};
    static const QString paths[] = {projects[0]->path(), projects[1]->path()};
    return paths[isOther ? 1 : 0];
}

void makeUnreadable(const QString &projectPath)
{
    QDir docs(projectPath + u"/Files/Docs"_s);
    const QStringList names = docs.entryList({u"*.rtf"_s}, QDir::Files);
    for (const QString &name : names) {
        if (!docs.remove(name) || !docs.mkpath(name + u"/obstacle"_s))
            qFatal("a text can't be made unreadable");
    }
}

TestModel openedCopy(const TestProject &project, bool isOther, bool unreadable)
{
    if (!TVLCoreUtil::CopyDirectory(original(isOther), project.path()))
        qFatal("the project can't be copied");
    if (unreadable)
        makeUnreadable(project.path());
    return project.open();
}

// --- For the tables below

ChangingFunction::Run nothing(void (*run)(TVLProjectModel *model, const Project &project))
{
    return [run](const Project &project) {
        run(project.model(), project);
        return Items();
    };
}

template <typename Result>
ChangingFunction::Run one(Result (*run)(TVLProjectModel *model, const Project &project))
{
    return [run](const Project &project) {
        const auto result = run(project.model(), project);
        if constexpr (std::is_same_v<Result, TVLProjectNode *>)
            return Items{project.model()->createIndex(result)};
        else
            return Items{result};
    };
}

ChangingFunction::Run several(Items (*run)(TVLProjectModel *model, const Project &project))
{
    return [run](const Project &project) { return run(project.model(), project); };
}

using M = TVLProjectModel *;
using P = const Project &;

QList<ChangingFunction> insertions()
{
    return {
        {"insertNode", one(+[](M m, P) {
             return m->insertNode(0, m->draftFolder(), TVL::Text, u"rtf"_s, u"n"_s);
         })},
        {"insertTextNode", one(+[](M m, P) {
             return m->insertTextNode(0, m->draftFolder(), u"n"_s, u"1"_s, u"2"_s, u"3"_s);
         })},
        {"insertImageNode", one(+[](M m, P) {
             return m->insertImageNode(0, m->researchFolder(), u"n"_s, somePicture(), u"2"_s,
                                       u"3"_s);
         })},
        {"insertUserFolder",
         one(+[](M m, P p) { return m->insertUserFolder(0, p.at(u"a"_s), u"n"_s); })},
        {"insertMultipleNodes", several(+[](M m, P p) {
             Items items;
             for (const TVLProjectNode *node :
                  m->insertMultipleNodes(0, p.at(u"a"_s), TVL::Text, u"rtf"_s, u"n"_s, 3))
                 items.append(m->createIndex(node));
             return items;
         })},
        {"insertMultipleTextNodes",
         several(+[](M m, P) { return m->insertMultipleTextNodes(1, m->draftFolder(), 3); })},
        {"insertRowWithProperties", one(+[](M m, P p) {
             return m->insertRowWithProperties(0, p.at(u"a"_s), m->nodeProperties(p.at(u"b"_s)));
         })},
        {"insertRows", nothing(+[](M m, P p) { m->insertRows(0, 3, p.at(u"a"_s)); })},
        {"insertRowsAndClone", nothing(+[](M m, P p) {
             m->insertRowsAndClone(0, 2, p.at(u"f"_s), p.at(u"a"_s),
                                   TVLProjectModel::CloneChildren);
         })},
        {"insertRowsAndClone below the source", nothing(+[](M m, P p) {
             m->insertRowsAndClone(0, 2, p.at(u"a"_s), p.at(u"a"_s),
                                   TVLProjectModel::CloneChildren);
         })},
        {"insertRowAndClone of another project", one(+[](M m, P p) {
             return m->insertRowAndClone(0, p.at(u"f"_s), p.foreign(u"x"_s),
                                         TVLProjectModel::CloneChildren);
         })},
        {"createNewItem", one(+[](M m, P p) { return m->createNewItem(0, p.at(u"a"_s)); })},
        {"createNewFolder", one(+[](M m, P) { return m->createNewFolder(1, m->draftFolder()); })},
        {"createNewText",
         one(+[](M m, P p) { return m->createNewText(1, m->draftFolder(), p.at(u"e"_s)); }),
         nothing(
             +[](M m, P p) { m->setTextMode(p.at(u"e"_s), TVLProjectModel::ScriptFormatMode); })},
        {"createNewProjectIndex", one(+[](M m, P p) {
             const QModelIndex source = p.foreign(u"x"_s);
             return m->createNewProjectIndex(0, p.at(u"f"_s), u"n"_s, nullptr, &source);
         })},
        {"createNewItemInConflictsFolder", one(+[](M m, P p) {
             const QModelIndex source = p.at(u"e"_s);
             return m->createNewItemInConflictsFolder(nullptr, u"n"_s, u"phone"_s, &source);
         })},
        {"syncConflictsSubFolder",
         one(+[](M m, P) { return m->syncConflictsSubFolder(u"phone"_s); })},
        {"createUrlNode", one(+[](M m, P) {
             return m->createUrlNode(QUrl(u"https://example.org"_s), 0, m->researchFolder());
         })},
    };
}

QList<ChangingFunction> removals()
{
    const auto toTrash = nothing(+[](M m, P p) { m->moveToTrash(p.all(u"a e f"_s)); });
    return {
        {"moveToFolder",
         nothing(+[](M m, P p) { m->moveToFolder(p.at(u"f"_s), p.all(u"b d e"_s), 1); })},
        {"moveToFolder among siblings",
         nothing(+[](M m, P p) { m->moveToFolder(m->draftFolder(), p.all(u"e a"_s), 0); })},
        {"moveToFolder of nodes", nothing(+[](M m, P p) {
             m->moveToFolder(p.node(u"a"_s), 0, {p.node(u"e"_s), p.node(u"g"_s), p.node(u"h"_s)});
         })},
        {"moveToTrash", nothing(+[](M m, P p) { m->moveToTrash(p.all(u"a e g h"_s)); })},
        {"emptyTrash", nothing(+[](M m, P) { m->emptyTrash(); }), toTrash},
        {"removeIndex", nothing(+[](M m, P p) { m->removeIndex(p.at(u"a"_s)); })},
        {"removeIndexFromModel", nothing(+[](M m, P p) { m->removeIndexFromModel(p.at(u"a"_s)); })},
        {"removeChildrenForIndex",
         nothing(+[](M m, P) { m->removeChildrenForIndex(m->draftFolder()); })},
        {"groupIndexes", one(+[](M m, P p) { return m->groupIndexes(p.all(u"a e"_s)); })},
        {"ungroupIndexes", nothing(+[](M m, P p) { m->ungroupIndexes(p.all(u"a b f"_s)); })},
        {"mergeIndexes", one(+[](M m, P p) { return m->mergeIndexes(p.all(u"e a f g"_s)); })},
    };
}

QList<ChangingFunction> copies()
{
    return {
        {"clone",
         nothing(+[](M m, P p) { m->clone(p.at(u"a"_s), p.at(u"f"_s), true, true, true, true); })},
        {"clone of another project", nothing(+[](M m, P p) {
             m->clone(p.foreign(u"x"_s), p.at(u"f"_s), true, true, true, true);
         })},
        {"cloneProjectFiles",
         nothing(+[](M m, P p) { m->cloneProjectFiles(p.at(u"a"_s), p.at(u"f"_s), true); })},
        {"cloneDesktopProperties", nothing(+[](M m, P p) {
             m->cloneDesktopProperties(p.foreign(u"x"_s), p.at(u"f"_s), true);
         })},
        {"cloneKeywordsAndReferences", nothing(+[](M m, P p) {
             m->cloneKeywordsAndReferences(p.foreign(u"x"_s), p.at(u"f"_s));
         })},
        {"cloneLabelsAndStatusItems",
         nothing(+[](M m, P p) { m->cloneLabelsAndStatusItems(p.foreign(u"x"_s), p.at(u"f"_s)); })},
        {"duplicate", several(+[](M m, P p) { return m->duplicate(p.all(u"a b e"_s), true); })},
        {"duplicate elsewhere", several(+[](M m, P p) {
             return m->duplicate(p.all(u"a e"_s), 1, p.at(u"f"_s), true, true);
         })},
        {"applyMobileAttributes", nothing(+[](M m, P p) {
             m->applyMobileAttributesFromIndex(p.foreign(u"x"_s), p.at(u"f"_s));
         })},
        {"applyDesktopAttributes", nothing(+[](M m, P p) {
             m->applyDesktopAttributesFromIndex(p.foreign(u"x"_s), p.at(u"f"_s));
         })},
    };
}

QList<ChangingFunction> attributes()
{
    return {
        {"setTitle", nothing(+[](M m, P p) { m->setTitle(p.at(u"a"_s), u"n"_s); })},
        {"setData", nothing(+[](M m, P p) { m->setData(p.at(u"a"_s), u"n"_s); })},
        {"setType", nothing(+[](M m, P p) { m->setType(p.at(u"a"_s), TVL::Folder); })},
        {"setWebUrl",
         nothing(+[](M m, P p) { m->setWebUrl(p.at(u"a"_s), QUrl(u"https://example.org"_s)); })},
        {"setScaleFactor", nothing(+[](M m, P p) { m->setScaleFactor(p.at(u"p"_s), 2.0); })},
        {"setTextMode", nothing(+[](M m, P p) {
             m->setTextMode(p.at(u"a"_s), TVLProjectModel::ScriptFormatMode);
         })},
        {"setCountTarget", nothing(+[](M m, P p) { m->setCountTarget(p.at(u"a"_s), 7); })},
        {"setSelection", nothing(+[](M m, P p) {
             m->setSelection(p.at(u"a"_s), {1, 2});
         })},
        {"verifyLabelStatusIdentity",
         nothing(+[](M m, P p) { m->verifyLabelStatusIdentity(p.at(u"a"_s), 0, 0); })},
        {"setIndexCardImage",
         nothing(+[](M m, P p) { m->setIndexCardImage(p.at(u"a"_s), somePicture()); })},
        {"setCustomIcon", nothing(+[](M m, P p) { m->setCustomIcon(p.at(u"a"_s), u"x"_s); })},
        {"addCustomIcon", nothing(+[](M m, P) { m->addCustomIcon(u"x"_s, somePicture()); })},
        {"renameCustomIcon", nothing(+[](M m, P) { m->renameCustomIcon(u"flag"_s, u"x"_s); })},
        {"removeCustomIcon", nothing(+[](M m, P) { m->removeCustomIcon(u"flag"_s); })},
        {"setTintIcons", nothing(+[](M m, P) { m->setTintIcons(true); })},
        {"setTemplateFolder", nothing(+[](M m, P p) { m->setTemplateFolder(p.at(u"f"_s)); })},
        {"clearTemplateFolder", nothing(+[](M m, P) { m->clearTemplateFolder(); })},
        {"setFavorite", nothing(+[](M m, P p) { m->setFavorite(p.at(u"e"_s), true, false); })},
        {"setFavorites",
         nothing(+[](M m, P p) { m->setFavorites(m->nodeIdentityList(p.all(u"h p c"_s))); })},
        {"clearFavorites", nothing(+[](M m, P) { m->clearFavorites(); })},
    };
}

QList<ChangingFunction> records()
{
    return {
        {"setLabels", nothing(+[](M m, P) {
             m->setLabels({{0, u"n"_s, QColor(Qt::blue)}});
         })},
        {"setStatusItems", nothing(+[](M m, P) {
             m->setStatusItems({{0, u"n"_s}});
         })},
        {"setLabelTitle", nothing(+[](M m, P) { m->setLabelTitle(u"n"_s); })},
        {"setStatusTitle", nothing(+[](M m, P) { m->setStatusTitle(u"n"_s); })},
        {"setDefaultLabelIdentity", nothing(+[](M m, P) { m->setDefaultLabelIdentity(1); })},
        {"setCustomMetaDataSettings", nothing(+[](M m, P) {
             m->setCustomMetaDataSettings({{u"time"_s, u"n"_s, false, QColor()}});
         })},
        {"setCustomMetaData",
         nothing(+[](M m, P p) { m->setCustomMetaData(p.at(u"a"_s), u"time"_s, u"n"_s); })},
        {"removeCustomMetaDataFromNodes",
         nothing(+[](M m, P) { m->removeCustomMetaDataFromNodes(u"place"_s); })},
        {"addReference",
         nothing(+[](M m, P p) { m->addReference(p.at(u"a"_s), someReference(u"n"_s)); })},
        {"addProjectReference",
         nothing(+[](M m, P) { m->addProjectReference(someReference(u"n"_s)); })},
        {"addToAutoCompleteList", nothing(+[](M m, P) {
             m->addToAutoCompleteList(u"n"_s, TVLAutoCompleteItem::Everywhere, 0);
         })},
        {"setKeywordIds", nothing(+[](M m, P p) { m->setKeywordIds(p.at(u"a"_s), {2}); })},
        {"setKeywords", nothing(+[](M m, P p) {
             m->setKeywords(p.at(u"a"_s), {u"n"_s, u"m"_s, u"red"_s});
         })},
        {"removing a keyword", nothing(+[](M m, P) {
             m->keywordModel()->removeItem(m->keywordModel()->findTitle(u"red"_s));
         })},
        {"renaming a keyword", nothing(+[](M m, P) {
             m->keywordModel()->setTitle(m->keywordModel()->findTitle(u"red"_s), u"n"_s);
         })},
        {"colouring a keyword", nothing(+[](M m, P) {
             m->keywordModel()->setColor(m->keywordModel()->findTitle(u"red"_s), Qt::cyan);
         })},
        {"inserting a keyword", nothing(+[](M m, P) {
             m->keywordModel()->insertItem(0, m->keywordModel()->findTitle(u"red"_s), u"n"_s);
         })},
        {"addProjectKeywords", nothing(+[](M m, P) {
             m->addProjectKeywords({{1, -1, u"n"_s, Qt::cyan}, {7, 1, u"m"_s, Qt::cyan}});
         })},
        {"setCollectionByPos",
         nothing(+[](M m, P) { m->setCollectionByPos(0, listOf(m, u"mine"_s)); })},
        {"setCollectionById",
         nothing(+[](M m, P) { m->setCollectionById(u"yours"_s, listOf(m, u"yours"_s)); })},
        {"setCollectionColor", nothing(+[](M m, P) { m->setCollectionColor(2, Qt::cyan); })},
        {"setRecentSearch", nothing(+[](M m, P) {
             TVLCollectionMetaData search = savedSearch(u"card"_s);
             search.mType = TVL::RecentSearchCollection;
             m->setRecentSearch(search);
         })},
        {"insertCollection",
         nothing(+[](M m, P p) { m->insertCollection(9, p.all(u"a b"_s), u"n"_s, Qt::cyan); })},
        {"removeCollection", nothing(+[](M m, P) { m->removeCollection(2); })},
        {"moveCollection", nothing(+[](M m, P) { m->moveCollection(0, 3); })},
        {"addToCollection",
         nothing(+[](M m, P p) { m->addToCollection(u"mine"_s, p.all(u"e f"_s)); })},
        {"removeFromCollection",
         nothing(+[](M m, P p) { m->removeFromCollection(u"yours"_s, p.all(u"a b"_s)); })},
        {"updateSearchCollections", nothing(+[](M m, P) { m->updateSearchCollections(); })},
        {"setCollectionUpdatedDocuments", nothing(+[](M m, P) {
             m->setCollectionUpdatedDocuments({3, 4});
         })},
        {"syncedDocumentsCollection",
         nothing(+[](M m, P) { (void)m->syncedDocumentsCollection(); })},
    };
}

QList<ChangingFunction> texts()
{
    return {
        {"typing", nothing(+[](M m, P p) { typeText(m, p.at(u"a"_s), u"n"_s); })},
        {"setSynopsis", nothing(+[](M m, P p) { m->setSynopsis(p.at(u"a"_s), u"n"_s); })},
        {"overwriteText", nothing(+[](M m, P p) {
             QTextDocument text;
             text.setPlainText(u"n"_s);
             m->overwriteText(p.at(u"a"_s), &text);
         })},
        {"setInspectorNote", nothing(+[](M m, P p) {
             m->setInspectorNote(p.at(u"a"_s), {0, 1}, TVLTextCommentLink(u"x"_s, "{\\rtf1 n}"));
         })},
        {"removeInspectorNotes", nothing(+[](M m, P p) {
             m->removeInspectorNotes(p.at(u"a"_s), {0, 2});
         }),
         nothing(+[](M m, P p) {
             for (const int position : {0, 2}) {
                 m->setInspectorNote(p.at(u"a"_s), {position, 1},
                                     TVLTextCommentLink(QString::number(position), "{\\rtf1 n}"));
             }
         })},
        {"addSnapshot", nothing(+[](M m, P p) { m->addSnapshot(p.at(u"e"_s), u"n"_s); })},
        {"setSnapshotTitle", nothing(+[](M m, P p) {
             const QList<TVLSnapshotInfo> infos = m->snapshots(p.at(u"a"_s));
             m->setSnapshotTitle(p.at(u"a"_s), infos.value(0).mDate, u"n"_s);
         })},
        {"removeSnapshot", nothing(+[](M m, P p) {
             m->removeSnapshot(p.at(u"a"_s), m->snapshots(p.at(u"a"_s)).value(0));
         })},
        {"loadSnapshotIntoMainText", nothing(+[](M m, P p) {
             m->loadSnapshotIntoMainText(p.at(u"a"_s), m->snapshots(p.at(u"a"_s)).value(0));
         })},
        {"addProjectNote", nothing(+[](M m, P) { m->addProjectNote(u"n"_s); })},
        {"renameProjectNote", nothing(+[](M m, P) {
             m->renameProjectNote(m->projectNoteIdentities().value(1), u"n"_s);
         })},
        {"moveProjectNote", nothing(+[](M m, P) { m->moveProjectNote(2, 0); })},
        {"removeProjectNote", nothing(+[](M m, P) {
             QStringList errors;
             m->removeProjectNote(m->projectNoteIdentities().value(1), &errors);
         })},
        {"resetSessionCounts", nothing(+[](M m, P) { m->resetSessionCounts(); })},
        {"setName", nothing(+[](M m, P) { m->setName(u"n"_s); })},
        {"setScriptMode", nothing(+[](M m, P) { m->setScriptMode(m->scriptMode()); })},
        {"save", nothing(+[](M m, P) { m->save(true); }), nothing(+[](M m, P p) {
             for (const QModelIndex &index : p.all(u"a b e f"_s))
                 typeText(m, index, u"n"_s);
         })},
    };
}

/** Folders come into the way of the texts of new items at the last moment. */
Items obstructNewItems(const Project &project)
{
    TVLProjectModel *model = project.model();
    QObject::connect(model, &TVLProjectModel::rowsAboutToBeInserted, model,
                     [model](const QModelIndex &, int first, int last) {
                         const QDir docs(model->path().filePath(u"Files/Docs"_s));
                         for (int i = 0; i <= last - first; ++i)
                             (void)docs.mkpath(
                                 u"%1.rtf/obstacle"_s.arg(model->findNextNodeId() + i));
                     });
    return {};
}

} // namespace

// --- The project

ChangingProject::ChangingProject(bool unreadable)
    : mModel(openedCopy(mProject, false, unreadable))
{
    TVLProjectModelTestAccess::setSaved(mModel.get());
}

QModelIndex ChangingProject::at(const QString &title) const
{
    return itemTitled(model(), title);
}

QModelIndexList ChangingProject::all(const QString &titles) const
{
    return itemsTitled(model(), titles);
}

TVLProjectNode *ChangingProject::node(const QString &title) const
{
    return model()->projectNode(at(title));
}

QModelIndex ChangingProject::foreign(const QString &title) const
{
    if (!mOther) {
        mOtherProject = std::make_unique<TestProject>(u"Other"_s);
        mOther = openedCopy(*mOtherProject, true, false);
    }
    return itemTitled(mOther.get(), title);
}

// --- The functions

const QList<ChangingFunction> &changingFunctions()
{
    static const QList<ChangingFunction> functions =
        insertions() + removals() + copies() + attributes() + records() + texts();
    return functions;
}

const QList<ChangingFunction> &insertingFunctions()
{
    static const QList<ChangingFunction> functions = insertions() + copies();
    return functions;
}

const QList<ChangingFunction> &readingFunctions()
{
    static const QList<ChangingFunction> functions = {
        {"referenceText",
         nothing(+[](M m, P p) { m->dereferenceItem(m->referenceText(p.at(u"a"_s))); })},
        {"insertMultipleNodes", several(+[](M m, P p) {
             Items items;
             for (const TVLProjectNode *node :
                  m->insertMultipleNodes(0, p.at(u"a"_s), TVL::Text, u"rtf"_s, u"n"_s, 3))
                 items.append(m->createIndex(node));
             return items;
         }),
         obstructNewItems},
        {"insertTextNode", one(+[](M m, P p) {
             return m->insertTextNode(0, p.at(u"a"_s), u"n"_s, u"1"_s, u"2"_s, u"3"_s);
         }),
         obstructNewItems},
        {"loadDocuments", nothing(+[](M m, P p) { m->loadDocuments(p.node(u"a"_s)); })},
        {"synopsis", nothing(+[](M m, P p) { (void)m->synopsis(p.at(u"a"_s)); })},
        {"tool tip", nothing(+[](M m, P p) { (void)m->data(p.at(u"a"_s), Qt::ToolTipRole); })},
        {"documentPlainText",
         nothing(+[](M m, P p) { (void)m->documentPlainText(p.at(u"a"_s), true); })},
        {"setSynopsis", nothing(+[](M m, P p) { m->setSynopsis(p.at(u"a"_s), u"n"_s); })},
        {"overwriteText", nothing(+[](M m, P p) {
             QTextDocument text;
             text.setPlainText(u"n"_s);
             m->overwriteText(p.at(u"a"_s), &text);
         })},
        {"inspectorNotesToPlainText",
         nothing(+[](M m, P p) { (void)m->inspectorNotesToPlainText(p.at(u"a"_s)); })},
        {"setInspectorNote", nothing(+[](M m, P p) {
             m->setInspectorNote(p.at(u"a"_s), {0, 1}, TVLTextCommentLink(u"x"_s, "{\\rtf1 n}"));
         })},
        {"removeInspectorNotes",
         nothing(+[](M m, P p) { m->removeInspectorNotes(p.at(u"a"_s), {0}); })},
        {"calcTitleFromText", nothing(+[](M m, P p) { (void)m->calcTitleFromText(p.at(u"a"_s)); })},
        {"autoGenerateSynopsisText",
         nothing(+[](M m, P p) { (void)m->autoGenerateSynopsisText(p.at(u"a"_s)); })},
        {"wordCount", nothing(+[](M m, P p) { (void)m->wordCount(p.at(u"a"_s), true, true); })},
        {"characterCount", nothing(+[](M m, P p) { (void)m->characterCount(p.at(u"a"_s)); })},
        {"sessionWordCount",
         nothing(+[](M m, P p) { (void)m->sessionWordCount(p.at(u"a"_s), true, true); })},
        {"sessionCharacterCount",
         nothing(+[](M m, P p) { (void)m->sessionCharacterCount(p.at(u"a"_s)); })},
        {"totalWordCount",
         nothing(+[](M m, P) { (void)m->totalWordCount(m->draftFolder(), true, true); })},
        {"totalCharacterCount",
         nothing(+[](M m, P) { (void)m->totalCharacterCount(m->rootIndex()); })},
        {"wordCharSessionCount",
         nothing(+[](M m, P) { (void)m->wordCharSessionCount(true, true, false); })},
        {"progress", nothing(+[](M m, P p) { (void)m->progressPercent(p.at(u"a"_s)); }),
         nothing(+[](M m, P p) { m->setCountTarget(p.at(u"a"_s), 7); })},
        {"sort by progress", several(+[](M, P p) {
             return TVLProjectModel::sort(p.all(u"a b c d e"_s), TVL::ProgressColumn,
                                          Qt::AscendingOrder);
         }),
         nothing(+[](M m, P p) {
             for (const QModelIndex &index : p.all(u"a b c d e"_s))
                 m->setCountTarget(index, 7);
         })},
        {"collectionIndexes", several(+[](M m, P p) {
             TVLCollectionMetaData search = savedSearch(u"card"_s);
             search.mSearchScope = TVL::SelectionScope;
             return m->collectionIndexes(search, p.all(u"a e f"_s));
         }),
         nothing(+[](M m, P p) {
             for (const QModelIndex &index : p.all(u"a b c d e f"_s))
                 m->searchIndex()->invalidateDocument(m->nodeIdentity(index), TVL::MainText);
         })},
        {"rebuildSearchIndexes", nothing(+[](M m, P) { m->rebuildSearchIndexes(false, nullptr); })},
        {"mergeIndexes", one(+[](M m, P p) { return m->mergeIndexes(p.all(u"e a f g"_s)); })},
        {"addSnapshot", nothing(+[](M m, P p) { m->addSnapshot(p.at(u"e"_s), u"n"_s); })},
        {"loadSnapshotIntoMainText", nothing(+[](M m, P p) {
             m->loadSnapshotIntoMainText(p.at(u"a"_s), m->snapshots(p.at(u"a"_s)).value(0));
         })},
    };
    return functions;
}
