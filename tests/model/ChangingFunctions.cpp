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
    reference.mUrl = QUrl(u"https://example.org/"_qs + title);
    return reference;
}

TVLCollectionMetaData listOf(const TVLProjectModel *model, const QString &title)
{
    TVLCollectionMetaData collection;
    collection.mId = title;
    collection.mTitle = title;
    collection.mType = TVL::ArbitraryCollection;
    collection.mIds = model->nodeIdentityList(itemsTitled(model, u"a b c"_qs));
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
    const QString card = title == u"a" || title == u"e" ? title + u" card"_qs : QString();
    model->insertTextNode(-1, parent, title, title + u" text"_qs, card, QString());
}

void fill(TVLProjectModel *model)
{
    for (const QString &title : {u"a"_qs, u"e"_qs})
        addText(model, model->draftFolder(), title);
    for (const QString &title : {u"b"_qs, u"d"_qs})
        addText(model, itemTitled(model, u"a"_qs), title);
    addText(model, itemTitled(model, u"b"_qs), u"c"_qs);
    addText(model, model->researchFolder(), u"f"_qs);
    for (const QString &title : {u"g"_qs, u"h"_qs})
        addText(model, itemTitled(model, u"f"_qs), title);
    model->insertImageNode(-1, model->researchFolder(), u"p"_qs, somePicture(), u"p card"_qs, {});

    TVLCustomMetaDataSettings fields;
    for (const QString &id : {u"place"_qs, u"time"_qs})
        fields.append({id, id, false, QColor()});
    model->setCustomMetaDataSettings(fields);
    model->addCustomIcon(u"flag"_qs, somePicture());
    const QStringList titles = {u"a"_qs, u"b"_qs, u"c"_qs, u"d"_qs, u"e"_qs, u"f"_qs, u"g"_qs};
    for (const QString &title : titles) {
        const QModelIndex index = itemTitled(model, title);
        model->setKeywords(index, {u"red"_qs, u"blue"_qs});
        model->setLabelIdentity(index, 1);
        model->setStatusIdentity(index, 2);
        model->setCustomMetaData(index, u"place"_qs, u"sea"_qs);
        model->setReferences(index, {someReference(title)});
        model->setCustomIcon(index, u"flag"_qs);
        model->addToFavorites(index, true);
    }
    for (const QModelIndex &index : itemsTitled(model, u"a f"_qs))
        model->addSnapshot(index, u"first"_qs);
    model->keywordModel()->insertItem(0, model->keywordModel()->findTitle(u"red"_qs), u"rose"_qs);
    model->setTemplateFolder(itemTitled(model, u"a"_qs));
    model->setCollections(
        {listOf(model, u"mine"_qs), savedSearch(u"text"_qs), listOf(model, u"yours"_qs)});
    model->addProjectNote(u"one"_qs);
    model->addProjectNote(u"two"_qs);
}

void fillOther(TVLProjectModel *model)
{
    addText(model, model->researchFolder(), u"x"_qs);
    for (const QString &title : {u"y"_qs, u"z"_qs})
        addText(model, itemTitled(model, u"x"_qs), title);
    QList<TVLLabel> labels = model->labels();
    QList<TVLStatusItem> items = model->statusItems();
    for (const QString &title : {u"x"_qs, u"y"_qs, u"z"_qs}) {
        const int id = int(labels.size()) + 20;
        labels.append({id, title + u" label"_qs, QColor(Qt::green)});
        items.append({id, title + u" status"_qs});
        model->setLabels(labels);
        model->setStatusItems(items);
        const QModelIndex index = itemTitled(model, title);
        model->setLabelIdentity(index, id);
        model->setStatusIdentity(index, id);
        model->setKeywords(index, {title + u" keyword"_qs, u"shared"_qs});
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
    QDir docs(projectPath + u"/Files/Docs"_qs);
    const QStringList names = docs.entryList({u"*.rtf"_qs}, QDir::Files);
    for (const QString &name : names) {
        if (!docs.remove(name) || !docs.mkpath(name + u"/obstacle"_qs))
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
             return m->insertNode(0, m->draftFolder(), TVL::Text, u"rtf"_qs, u"n"_qs);
         })},
        {"insertTextNode", one(+[](M m, P) {
             return m->insertTextNode(0, m->draftFolder(), u"n"_qs, u"1"_qs, u"2"_qs, u"3"_qs);
         })},
        {"insertImageNode", one(+[](M m, P) {
             return m->insertImageNode(0, m->researchFolder(), u"n"_qs, somePicture(), u"2"_qs,
                                       u"3"_qs);
         })},
        {"insertUserFolder",
         one(+[](M m, P p) { return m->insertUserFolder(0, p.at(u"a"_qs), u"n"_qs); })},
        {"insertMultipleNodes", several(+[](M m, P p) {
             Items items;
             for (const TVLProjectNode *node :
                  m->insertMultipleNodes(0, p.at(u"a"_qs), TVL::Text, u"rtf"_qs, u"n"_qs, 3))
                 items.append(m->createIndex(node));
             return items;
         })},
        {"insertMultipleTextNodes",
         several(+[](M m, P) { return m->insertMultipleTextNodes(1, m->draftFolder(), 3); })},
        {"insertRowWithProperties", one(+[](M m, P p) {
             return m->insertRowWithProperties(0, p.at(u"a"_qs), m->nodeProperties(p.at(u"b"_qs)));
         })},
        {"insertRows", nothing(+[](M m, P p) { m->insertRows(0, 3, p.at(u"a"_qs)); })},
        {"insertRowsAndClone", nothing(+[](M m, P p) {
             m->insertRowsAndClone(0, 2, p.at(u"f"_qs), p.at(u"a"_qs),
                                   TVLProjectModel::CloneChildren);
         })},
        {"insertRowsAndClone below the source", nothing(+[](M m, P p) {
             m->insertRowsAndClone(0, 2, p.at(u"a"_qs), p.at(u"a"_qs),
                                   TVLProjectModel::CloneChildren);
         })},
        {"insertRowAndClone of another project", one(+[](M m, P p) {
             return m->insertRowAndClone(0, p.at(u"f"_qs), p.foreign(u"x"_qs),
                                         TVLProjectModel::CloneChildren);
         })},
        {"createNewItem", one(+[](M m, P p) { return m->createNewItem(0, p.at(u"a"_qs)); })},
        {"createNewFolder", one(+[](M m, P) { return m->createNewFolder(1, m->draftFolder()); })},
        {"createNewText",
         one(+[](M m, P p) { return m->createNewText(1, m->draftFolder(), p.at(u"e"_qs)); }),
         nothing(
             +[](M m, P p) { m->setTextMode(p.at(u"e"_qs), TVLProjectModel::ScriptFormatMode); })},
        {"createNewProjectIndex", one(+[](M m, P p) {
             const QModelIndex source = p.foreign(u"x"_qs);
             return m->createNewProjectIndex(0, p.at(u"f"_qs), u"n"_qs, nullptr, &source);
         })},
        {"createNewItemInConflictsFolder", one(+[](M m, P p) {
             const QModelIndex source = p.at(u"e"_qs);
             return m->createNewItemInConflictsFolder(nullptr, u"n"_qs, u"phone"_qs, &source);
         })},
        {"syncConflictsSubFolder",
         one(+[](M m, P) { return m->syncConflictsSubFolder(u"phone"_qs); })},
        {"createUrlNode", one(+[](M m, P) {
             return m->createUrlNode(QUrl(u"https://example.org"_qs), 0, m->researchFolder());
         })},
    };
}

QList<ChangingFunction> removals()
{
    const auto toTrash = nothing(+[](M m, P p) { m->moveToTrash(p.all(u"a e f"_qs)); });
    return {
        {"moveToFolder",
         nothing(+[](M m, P p) { m->moveToFolder(p.at(u"f"_qs), p.all(u"b d e"_qs), 1); })},
        {"moveToFolder among siblings",
         nothing(+[](M m, P p) { m->moveToFolder(m->draftFolder(), p.all(u"e a"_qs), 0); })},
        {"moveToFolder of nodes", nothing(+[](M m, P p) {
             m->moveToFolder(p.node(u"a"_qs), 0,
                             {p.node(u"e"_qs), p.node(u"g"_qs), p.node(u"h"_qs)});
         })},
        {"moveToTrash", nothing(+[](M m, P p) { m->moveToTrash(p.all(u"a e g h"_qs)); })},
        {"emptyTrash", nothing(+[](M m, P) { m->emptyTrash(); }), toTrash},
        {"removeIndex", nothing(+[](M m, P p) { m->removeIndex(p.at(u"a"_qs)); })},
        {"removeIndexFromModel",
         nothing(+[](M m, P p) { m->removeIndexFromModel(p.at(u"a"_qs)); })},
        {"removeChildrenForIndex",
         nothing(+[](M m, P) { m->removeChildrenForIndex(m->draftFolder()); })},
        {"groupIndexes", one(+[](M m, P p) { return m->groupIndexes(p.all(u"a e"_qs)); })},
        {"ungroupIndexes", nothing(+[](M m, P p) { m->ungroupIndexes(p.all(u"a b f"_qs)); })},
        {"mergeIndexes", one(+[](M m, P p) { return m->mergeIndexes(p.all(u"e a f g"_qs)); })},
    };
}

QList<ChangingFunction> copies()
{
    return {
        {"clone", nothing(+[](M m, P p) {
             m->clone(p.at(u"a"_qs), p.at(u"f"_qs), true, true, true, true);
         })},
        {"clone of another project", nothing(+[](M m, P p) {
             m->clone(p.foreign(u"x"_qs), p.at(u"f"_qs), true, true, true, true);
         })},
        {"cloneProjectFiles",
         nothing(+[](M m, P p) { m->cloneProjectFiles(p.at(u"a"_qs), p.at(u"f"_qs), true); })},
        {"cloneDesktopProperties", nothing(+[](M m, P p) {
             m->cloneDesktopProperties(p.foreign(u"x"_qs), p.at(u"f"_qs), true);
         })},
        {"cloneKeywordsAndReferences", nothing(+[](M m, P p) {
             m->cloneKeywordsAndReferences(p.foreign(u"x"_qs), p.at(u"f"_qs));
         })},
        {"cloneLabelsAndStatusItems", nothing(+[](M m, P p) {
             m->cloneLabelsAndStatusItems(p.foreign(u"x"_qs), p.at(u"f"_qs));
         })},
        {"duplicate", several(+[](M m, P p) { return m->duplicate(p.all(u"a b e"_qs), true); })},
        {"duplicate elsewhere", several(+[](M m, P p) {
             return m->duplicate(p.all(u"a e"_qs), 1, p.at(u"f"_qs), true, true);
         })},
        {"applyMobileAttributes", nothing(+[](M m, P p) {
             m->applyMobileAttributesFromIndex(p.foreign(u"x"_qs), p.at(u"f"_qs));
         })},
        {"applyDesktopAttributes", nothing(+[](M m, P p) {
             m->applyDesktopAttributesFromIndex(p.foreign(u"x"_qs), p.at(u"f"_qs));
         })},
    };
}

QList<ChangingFunction> attributes()
{
    return {
        {"setTitle", nothing(+[](M m, P p) { m->setTitle(p.at(u"a"_qs), u"n"_qs); })},
        {"setData", nothing(+[](M m, P p) { m->setData(p.at(u"a"_qs), u"n"_qs); })},
        {"setType", nothing(+[](M m, P p) { m->setType(p.at(u"a"_qs), TVL::Folder); })},
        {"setWebUrl",
         nothing(+[](M m, P p) { m->setWebUrl(p.at(u"a"_qs), QUrl(u"https://example.org"_qs)); })},
        {"setScaleFactor", nothing(+[](M m, P p) { m->setScaleFactor(p.at(u"p"_qs), 2.0); })},
        {"setTextMode", nothing(+[](M m, P p) {
             m->setTextMode(p.at(u"a"_qs), TVLProjectModel::ScriptFormatMode);
         })},
        {"setCountTarget", nothing(+[](M m, P p) { m->setCountTarget(p.at(u"a"_qs), 7); })},
        {"setSelection", nothing(+[](M m, P p) {
             m->setSelection(p.at(u"a"_qs), {1, 2});
         })},
        {"verifyLabelStatusIdentity",
         nothing(+[](M m, P p) { m->verifyLabelStatusIdentity(p.at(u"a"_qs), 0, 0); })},
        {"setIndexCardImage",
         nothing(+[](M m, P p) { m->setIndexCardImage(p.at(u"a"_qs), somePicture()); })},
        {"setCustomIcon", nothing(+[](M m, P p) { m->setCustomIcon(p.at(u"a"_qs), u"x"_qs); })},
        {"addCustomIcon", nothing(+[](M m, P) { m->addCustomIcon(u"x"_qs, somePicture()); })},
        {"renameCustomIcon", nothing(+[](M m, P) { m->renameCustomIcon(u"flag"_qs, u"x"_qs); })},
        {"removeCustomIcon", nothing(+[](M m, P) { m->removeCustomIcon(u"flag"_qs); })},
        {"setTintIcons", nothing(+[](M m, P) { m->setTintIcons(true); })},
        {"setTemplateFolder", nothing(+[](M m, P p) { m->setTemplateFolder(p.at(u"f"_qs)); })},
        {"clearTemplateFolder", nothing(+[](M m, P) { m->clearTemplateFolder(); })},
        {"setFavorite", nothing(+[](M m, P p) { m->setFavorite(p.at(u"e"_qs), true, false); })},
        {"setFavorites",
         nothing(+[](M m, P p) { m->setFavorites(m->nodeIdentityList(p.all(u"h p c"_qs))); })},
        {"clearFavorites", nothing(+[](M m, P) { m->clearFavorites(); })},
    };
}

QList<ChangingFunction> records()
{
    return {
        {"setLabels", nothing(+[](M m, P) {
             m->setLabels({{0, u"n"_qs, QColor(Qt::blue)}});
         })},
        {"setStatusItems", nothing(+[](M m, P) {
             m->setStatusItems({{0, u"n"_qs}});
         })},
        {"setLabelTitle", nothing(+[](M m, P) { m->setLabelTitle(u"n"_qs); })},
        {"setStatusTitle", nothing(+[](M m, P) { m->setStatusTitle(u"n"_qs); })},
        {"setDefaultLabelIdentity", nothing(+[](M m, P) { m->setDefaultLabelIdentity(1); })},
        {"setCustomMetaDataSettings", nothing(+[](M m, P) {
             m->setCustomMetaDataSettings({{u"time"_qs, u"n"_qs, false, QColor()}});
         })},
        {"setCustomMetaData",
         nothing(+[](M m, P p) { m->setCustomMetaData(p.at(u"a"_qs), u"time"_qs, u"n"_qs); })},
        {"removeCustomMetaDataFromNodes",
         nothing(+[](M m, P) { m->removeCustomMetaDataFromNodes(u"place"_qs); })},
        {"addReference",
         nothing(+[](M m, P p) { m->addReference(p.at(u"a"_qs), someReference(u"n"_qs)); })},
        {"addProjectReference",
         nothing(+[](M m, P) { m->addProjectReference(someReference(u"n"_qs)); })},
        {"addToAutoCompleteList", nothing(+[](M m, P) {
             m->addToAutoCompleteList(u"n"_qs, TVLAutoCompleteItem::Everywhere, 0);
         })},
        {"setKeywordIds", nothing(+[](M m, P p) { m->setKeywordIds(p.at(u"a"_qs), {2}); })},
        {"setKeywords", nothing(+[](M m, P p) {
             m->setKeywords(p.at(u"a"_qs), {u"n"_qs, u"m"_qs, u"red"_qs});
         })},
        {"removing a keyword", nothing(+[](M m, P) {
             m->keywordModel()->removeItem(m->keywordModel()->findTitle(u"red"_qs));
         })},
        {"renaming a keyword", nothing(+[](M m, P) {
             m->keywordModel()->setTitle(m->keywordModel()->findTitle(u"red"_qs), u"n"_qs);
         })},
        {"colouring a keyword", nothing(+[](M m, P) {
             m->keywordModel()->setColor(m->keywordModel()->findTitle(u"red"_qs), Qt::cyan);
         })},
        {"inserting a keyword", nothing(+[](M m, P) {
             m->keywordModel()->insertItem(0, m->keywordModel()->findTitle(u"red"_qs), u"n"_qs);
         })},
        {"addProjectKeywords", nothing(+[](M m, P) {
             m->addProjectKeywords({{1, -1, u"n"_qs, Qt::cyan}, {7, 1, u"m"_qs, Qt::cyan}});
         })},
        {"setCollectionByPos",
         nothing(+[](M m, P) { m->setCollectionByPos(0, listOf(m, u"mine"_qs)); })},
        {"setCollectionById",
         nothing(+[](M m, P) { m->setCollectionById(u"yours"_qs, listOf(m, u"yours"_qs)); })},
        {"setCollectionColor", nothing(+[](M m, P) { m->setCollectionColor(2, Qt::cyan); })},
        {"setRecentSearch", nothing(+[](M m, P) {
             TVLCollectionMetaData search = savedSearch(u"card"_qs);
             search.mType = TVL::RecentSearchCollection;
             m->setRecentSearch(search);
         })},
        {"insertCollection",
         nothing(+[](M m, P p) { m->insertCollection(9, p.all(u"a b"_qs), u"n"_qs, Qt::cyan); })},
        {"removeCollection", nothing(+[](M m, P) { m->removeCollection(2); })},
        {"moveCollection", nothing(+[](M m, P) { m->moveCollection(0, 3); })},
        {"addToCollection",
         nothing(+[](M m, P p) { m->addToCollection(u"mine"_qs, p.all(u"e f"_qs)); })},
        {"removeFromCollection",
         nothing(+[](M m, P p) { m->removeFromCollection(u"yours"_qs, p.all(u"a b"_qs)); })},
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
        {"typing", nothing(+[](M m, P p) { typeText(m, p.at(u"a"_qs), u"n"_qs); })},
        {"setSynopsis", nothing(+[](M m, P p) { m->setSynopsis(p.at(u"a"_qs), u"n"_qs); })},
        {"overwriteText", nothing(+[](M m, P p) {
             QTextDocument text;
             text.setPlainText(u"n"_qs);
             m->overwriteText(p.at(u"a"_qs), &text);
         })},
        {"setInspectorNote", nothing(+[](M m, P p) {
             m->setInspectorNote(p.at(u"a"_qs), {0, 1}, TVLTextCommentLink(u"x"_qs, "{\\rtf1 n}"));
         })},
        {"removeInspectorNotes", nothing(+[](M m, P p) {
             m->removeInspectorNotes(p.at(u"a"_qs), {0, 2});
         }),
         nothing(+[](M m, P p) {
             for (const int position : {0, 2}) {
                 m->setInspectorNote(p.at(u"a"_qs), {position, 1},
                                     TVLTextCommentLink(QString::number(position), "{\\rtf1 n}"));
             }
         })},
        {"addSnapshot", nothing(+[](M m, P p) { m->addSnapshot(p.at(u"e"_qs), u"n"_qs); })},
        {"setSnapshotTitle", nothing(+[](M m, P p) {
             const QList<TVLSnapshotInfo> infos = m->snapshots(p.at(u"a"_qs));
             m->setSnapshotTitle(p.at(u"a"_qs), infos.value(0).mDate, u"n"_qs);
         })},
        {"removeSnapshot", nothing(+[](M m, P p) {
             m->removeSnapshot(p.at(u"a"_qs), m->snapshots(p.at(u"a"_qs)).value(0));
         })},
        {"loadSnapshotIntoMainText", nothing(+[](M m, P p) {
             m->loadSnapshotIntoMainText(p.at(u"a"_qs), m->snapshots(p.at(u"a"_qs)).value(0));
         })},
        {"addProjectNote", nothing(+[](M m, P) { m->addProjectNote(u"n"_qs); })},
        {"renameProjectNote", nothing(+[](M m, P) {
             m->renameProjectNote(m->projectNoteIdentities().value(1), u"n"_qs);
         })},
        {"moveProjectNote", nothing(+[](M m, P) { m->moveProjectNote(2, 0); })},
        {"removeProjectNote", nothing(+[](M m, P) {
             QStringList errors;
             m->removeProjectNote(m->projectNoteIdentities().value(1), &errors);
         })},
        {"resetSessionCounts", nothing(+[](M m, P) { m->resetSessionCounts(); })},
        {"setName", nothing(+[](M m, P) { m->setName(u"n"_qs); })},
        {"setScriptMode", nothing(+[](M m, P) { m->setScriptMode(m->scriptMode()); })},
        {"save", nothing(+[](M m, P) { m->save(true); }), nothing(+[](M m, P p) {
             for (const QModelIndex &index : p.all(u"a b e f"_qs))
                 typeText(m, index, u"n"_qs);
         })},
    };
}

/** Folders come into the way of the texts of new items at the last moment. */
Items obstructNewItems(const Project &project)
{
    TVLProjectModel *model = project.model();
    QObject::connect(model, &TVLProjectModel::rowsAboutToBeInserted, model,
                     [model](const QModelIndex &, int first, int last) {
                         const QDir docs(model->path().filePath(u"Files/Docs"_qs));
                         for (int i = 0; i <= last - first; ++i)
                             (void)docs.mkpath(
                                 u"%1.rtf/obstacle"_qs.arg(model->findNextNodeId() + i));
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
        mOtherProject = std::make_unique<TestProject>(u"Other"_qs);
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
         nothing(+[](M m, P p) { m->dereferenceItem(m->referenceText(p.at(u"a"_qs))); })},
        {"insertMultipleNodes", several(+[](M m, P p) {
             Items items;
             for (const TVLProjectNode *node :
                  m->insertMultipleNodes(0, p.at(u"a"_qs), TVL::Text, u"rtf"_qs, u"n"_qs, 3))
                 items.append(m->createIndex(node));
             return items;
         }),
         obstructNewItems},
        {"insertTextNode", one(+[](M m, P p) {
             return m->insertTextNode(0, p.at(u"a"_qs), u"n"_qs, u"1"_qs, u"2"_qs, u"3"_qs);
         }),
         obstructNewItems},
        {"loadDocuments", nothing(+[](M m, P p) { m->loadDocuments(p.node(u"a"_qs)); })},
        {"synopsis", nothing(+[](M m, P p) { (void)m->synopsis(p.at(u"a"_qs)); })},
        {"tool tip", nothing(+[](M m, P p) { (void)m->data(p.at(u"a"_qs), Qt::ToolTipRole); })},
        {"documentPlainText",
         nothing(+[](M m, P p) { (void)m->documentPlainText(p.at(u"a"_qs), true); })},
        {"setSynopsis", nothing(+[](M m, P p) { m->setSynopsis(p.at(u"a"_qs), u"n"_qs); })},
        {"overwriteText", nothing(+[](M m, P p) {
             QTextDocument text;
             text.setPlainText(u"n"_qs);
             m->overwriteText(p.at(u"a"_qs), &text);
         })},
        {"inspectorNotesToPlainText",
         nothing(+[](M m, P p) { (void)m->inspectorNotesToPlainText(p.at(u"a"_qs)); })},
        {"setInspectorNote", nothing(+[](M m, P p) {
             m->setInspectorNote(p.at(u"a"_qs), {0, 1}, TVLTextCommentLink(u"x"_qs, "{\\rtf1 n}"));
         })},
        {"removeInspectorNotes",
         nothing(+[](M m, P p) { m->removeInspectorNotes(p.at(u"a"_qs), {0}); })},
        {"calcTitleFromText",
         nothing(+[](M m, P p) { (void)m->calcTitleFromText(p.at(u"a"_qs)); })},
        {"autoGenerateSynopsisText",
         nothing(+[](M m, P p) { (void)m->autoGenerateSynopsisText(p.at(u"a"_qs)); })},
        {"wordCount", nothing(+[](M m, P p) { (void)m->wordCount(p.at(u"a"_qs), true, true); })},
        {"characterCount", nothing(+[](M m, P p) { (void)m->characterCount(p.at(u"a"_qs)); })},
        {"sessionWordCount",
         nothing(+[](M m, P p) { (void)m->sessionWordCount(p.at(u"a"_qs), true, true); })},
        {"sessionCharacterCount",
         nothing(+[](M m, P p) { (void)m->sessionCharacterCount(p.at(u"a"_qs)); })},
        {"totalWordCount",
         nothing(+[](M m, P) { (void)m->totalWordCount(m->draftFolder(), true, true); })},
        {"totalCharacterCount",
         nothing(+[](M m, P) { (void)m->totalCharacterCount(m->rootIndex()); })},
        {"wordCharSessionCount",
         nothing(+[](M m, P) { (void)m->wordCharSessionCount(true, true, false); })},
        {"progress", nothing(+[](M m, P p) { (void)m->progressPercent(p.at(u"a"_qs)); }),
         nothing(+[](M m, P p) { m->setCountTarget(p.at(u"a"_qs), 7); })},
        {"sort by progress", several(+[](M, P p) {
             return TVLProjectModel::sort(p.all(u"a b c d e"_qs), TVL::ProgressColumn,
                                          Qt::AscendingOrder);
         }),
         nothing(+[](M m, P p) {
             for (const QModelIndex &index : p.all(u"a b c d e"_qs))
                 m->setCountTarget(index, 7);
         })},
        {"collectionIndexes", several(+[](M m, P p) {
             TVLCollectionMetaData search = savedSearch(u"card"_qs);
             search.mSearchScope = TVL::SelectionScope;
             return m->collectionIndexes(search, p.all(u"a e f"_qs));
         }),
         nothing(+[](M m, P p) {
             for (const QModelIndex &index : p.all(u"a b c d e f"_qs))
                 m->searchIndex()->invalidateDocument(m->nodeIdentity(index), TVL::MainText);
         })},
        {"rebuildSearchIndexes", nothing(+[](M m, P) { m->rebuildSearchIndexes(false, nullptr); })},
        {"mergeIndexes", one(+[](M m, P p) { return m->mergeIndexes(p.all(u"e a f g"_qs)); })},
        {"addSnapshot", nothing(+[](M m, P p) { m->addSnapshot(p.at(u"e"_qs), u"n"_qs); })},
        {"loadSnapshotIntoMainText", nothing(+[](M m, P p) {
             m->loadSnapshotIntoMainText(p.at(u"a"_qs), m->snapshots(p.at(u"a"_qs)).value(0));
         })},
    };
    return functions;
}
