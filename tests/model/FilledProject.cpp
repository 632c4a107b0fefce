#include "FilledProject.h"

#include "RandomTree.h"
#include "StorageFixtures.h"
#include "TVLKeywordModel.h"

#include <QAbstractEventDispatcher>
#include <QPageLayout>
#include <QPrinter>

using namespace Qt::StringLiterals;

namespace {

const QString BinderFile = u"Novel.tavelx"_s;

const TVLMetaDataField Pov = {u"pov"_s, u"Point of <view>"_s, true, QColor(1, 2, 3)};
const TVLMetaDataField Day = {u"day"_s, u"Day"_s, false, QColor()};

template <auto get>
bool isSame(const TVLProjectModel *left, const TVLProjectModel *right)
{
    return (left->*get)() == (right->*get)();
}

bool haveSamePage(const TVLProjectModel *left, const TVLProjectModel *right)
{
    return pageOf(left) == pageOf(right);
}

struct ValueRow
{
    const char *name;
    bool inMobileBinder;
    bool (*isSame)(const TVLProjectModel *left, const TVLProjectModel *right);
};

using Model = TVLProjectModel;

/** Everything that a binder says of the project as a whole. */
constexpr ValueRow Values[] = {
    {"labels", true, isSame<&Model::labels>},
    {"default label", true, isSame<&Model::defaultLabelIdentity>},
    {"label title", true, isSame<&Model::labelTitle>},
    {"status items", true, isSame<&Model::statusItems>},
    {"default status item", true, isSame<&Model::defaultStatusIdentity>},
    {"status title", true, isSame<&Model::statusTitle>},
    {"template folder", true, isSame<&Model::templateFolderUuid>},
    {"collections", false, isSame<&Model::collections>},
    {"keywords", false, isSame<&Model::projectKeywords>},
    {"fields", false, isSame<&Model::customMetaDataSettings>},
    {"project title", false, isSame<&Model::projectTitle>},
    {"abbreviated title", false, isSame<&Model::projectAbbreviatedTitle>},
    {"full name", false, isSame<&Model::authorFullName>},
    {"surname", false, isSame<&Model::authorSurname>},
    {"forename", false, isSame<&Model::authorForename>},
    {"draft target", false, isSame<&Model::draftTarget>},
    {"session target", false, isSame<&Model::sessionTarget>},
    {"notification of targets", false, isSame<&Model::notifyTargets>},
    {"favorites", false, isSame<&Model::favoriteIds>},
    {"completions", false, isSame<&Model::autoCompleteList>},
    {"backup", false, isSame<&Model::backupIncluded>},
    {"backdrop", false, isSame<&Model::fullScreenBackdrop>},
    {"references", false, isSame<&Model::projectReferences>},
    {"page", false, haveSamePage},
    {"user data", false, isSame<&Model::userProjectData>},
};

TVLReference toAddress(const QString &address, const QString &title)
{
    TVLReference reference;
    reference.setUrl(QUrl(address));
    reference.mTitle = title;
    return reference;
}

TVLCollectionMetaData handmadeCollection(const QList<int> &ids)
{
    TVLCollectionMetaData collection;
    collection.mId = u"to-check"_s;
    collection.mType = TVL::ArbitraryCollection;
    collection.mTitle = u"To check"_s;
    collection.mColor = QColor(4, 5, 6);
    collection.mIds = ids;
    return collection;
}

/** The collections of a project with the colours that those of some kinds have in a binder. */
QList<TVLCollectionMetaData> savedCollections(const TVLProjectModel *model)
{
    QList<TVLCollectionMetaData> collections = model->collections();
    for (TVLCollectionMetaData &collection : collections)
        collection.mColor = collection.color();
    return collections;
}

void giveValuesToItems(TVLProjectModel *model)
{
    const QModelIndex item = model->index(4);
    model->setLabelIdentity(item, 7);
    model->setStatusIdentity(item, 3);
    model->setKeywords(item, {u"train"_s, u"place <&>"_s});
    model->setCustomMetaData(item, u"pov"_s, u"Ann\n\tand <&>"_s);
    model->setCustomMetaData(item, u"day"_s, u"Monday"_s);
    model->setCustomMetaData(model->index(5), u"day"_s, QString());
    model->setCustomMetaData(model->index(6), u"of no field"_s, u"x"_s);
    model->setReferences(item, {toItem(5, u"In <here>"_s), toAddress(u"https://a.b/c?d"_s, {})});
}

/** Times as exact as the binder keeps them, and nothing that ends with the session. */
void keepWhatIsSaved(const TVLProjectModel *model)
{
    const QDateTime time(QDate(2019, 8, 7), QTime(6, 5, 4));
    tvlForEachNode(model->binderRoot(), [&time](TVLProjectNode *node) {
        node->mCreated = time.addSecs(node->mId);
        node->mModified = time.addDays(node->mId);
        node->mSessionWordCount = -1;
        node->mSessionCharacterCount = -1;
    });
}

} // namespace

QString oddUserData()
{
    return u"<UserProjectData><!-- mine > & --><A  x = '1'\ty=\"2\" ></A >\r\n"
           "<![CDATA[<not> & parsed]]><b />&#65;\u6f22\U0001d11e\n </UserProjectData>"_s;
}

bool haveSameItems(const TVLProjectModel *left, const TVLProjectModel *right)
{
    QString where;
    return equalTrees(left->binderRoot(), right->binderRoot(), &where);
}

QString pageOf(const TVLProjectModel *model)
{
    const QPrinter *printer = model->printer();
    const QPageLayout layout = printer->pageLayout();
    const QMarginsF margins = layout.margins(QPageLayout::Point);
    return u"%1 %2 %3 %4 %5 %6 %7 %8"_s.arg(layout.pageSize().id())
        .arg(layout.orientation())
        .arg(margins.left())
        .arg(margins.top())
        .arg(margins.right())
        .arg(margins.bottom())
        .arg(printer->collateCopies())
        .arg(printer->pageOrder());
}

QStringList differences(const TVLProjectModel *left, const TVLProjectModel *right)
{
    QStringList names;
    for (const ValueRow &row : Values) {
        if (!row.isSame(left, right))
            names.append(QString::fromLatin1(row.name));
    }
    return names;
}

QStringList valueNames(bool withThoseOfMobileBinders)
{
    QStringList names;
    for (const ValueRow &row : Values) {
        if (withThoseOfMobileBinders || !row.inMobileBinder)
            names.append(QString::fromLatin1(row.name));
    }
    return names;
}

TVLReference toItem(int id, const QString &title)
{
    TVLReference reference;
    reference.setInternalLink(id);
    reference.mTitle = title;
    return reference;
}

TestModel filledProject(const TestProject &project)
{
    auto model = project.create();
    addTree(model.get(), model->draftFolder(), u"x(y) z"_s);
    fillProject(model.get());
    keepWhatIsSaved(model.get());
    if (!model->save(true))
        qFatal("the project could not be saved");
    return model;
}

void fillProject(TVLProjectModel *model)
{
    model->setLabels({{-1, u"None"_s, {}}, {7, u"Seven"_s, QColor(7, 8, 9)}, {0, {}, Qt::red}});
    model->setDefaultLabelIdentity(7);
    model->setLabelTitle(u"Kind"_s);
    model->setStatusItems({{3, u"Done"_s}, {-1, u"None"_s}});
    model->setDefaultStatusIdentity(3);
    model->setStatusTitle(u"Stage"_s);
    model->setTemplateFolder(model->index(6));
    model->setCollections(savedCollections(model) + QList{handmadeCollection({6, 4})});
    model->setCustomMetaDataSettings({Pov, Day});
    giveValuesToItems(model);
    model->keywordModel()->setColor(model->keywordModel()->index(1), QColor(9, 8, 7));
    model->setProjectTitle(u"A <Title> & more"_s);
    model->setProjectAbbreviatedTitle(u"A T"_s);
    model->setAuthorFullName(u"Ann Other"_s);
    model->setAuthorSurname(u"Other"_s);
    model->setAuthorForename(u"Ann"_s);
    model->setDraftTarget({u"2031-05-06 00:00:00 +0000"_s, 90000, 0, true, true, true, true, 50});
    TVLSessionTarget session;
    session.mWritingDays = u"Mon,Tue"_s;
    session.mCount = 500;
    session.mType = 2;
    session.mCountDraftOnly = true;
    session.mAllowNegatives = true;
    session.mResetType = TVLSessionTarget::NextDay;
    session.mFromDeadline = true;
    session.mCanWriteOnDeadlineDate = true;
    model->setSessionTarget(session);
    model->setNotifyTargets(true);
    for (const int id : {5, 3, 4})
        model->addToFavorites(model->index(id), true);
    model->setAutoCompleteList({{-2, u"Ann & <Ben>"_s}, {-1, u"word"_s}, {12, u"INT."_s}});
    model->setExcludeFromBackup(true);
    model->setFullScreenBackdrop(5);
    model->setProjectReferences({toAddress(u"https://example.org/a%20b"_s, u"Out"_s),
                                 toItem(3, u"In"_s), toItem(99, u"Nowhere"_s)});
    auto *printer = new QPrinter(QPrinter::PrinterResolution);
    printer->setPageSize(QPageSize(QPageSize::B5));
    printer->setPageOrientation(QPageLayout::Landscape);
    printer->setPageMargins({36, 45.5, 54, 72.25}, QPageLayout::Point);
    printer->setCollateCopies(!printer->collateCopies());
    printer->setPageOrder(QPrinter::LastPageFirst);
    model->setPrinter(printer);
    model->setUserProjectData(oddUserData());
}

QByteArray someItems()
{
    return itemXml(0, "DraftFolder", "Draft",
                   itemXml(3, "Text", "a") + itemXml(4, "Text", "b", itemXml(5, "Text", "c"))
                       + itemXml(6, "Folder", "d"))
        + itemXml(1, "ResearchFolder", "Research") + itemXml(2, "TrashFolder", "Trash");
}

TestModel openedWith(const TestProject &project, const QByteArray &sections)
{
    project.writeFile(BinderFile, binderXml(someItems(), sections));
    return project.open();
}

TestModel openedWith(const QByteArray &sections)
{
    const TestProject project;
    return openedWith(project, sections);
}

QByteArray favoritesXml(const QList<QByteArray> &ids)
{
    QByteArray xml = "<Favorites>";
    for (const QByteArray &id : ids)
        xml += "<BinderID>" + id + "</BinderID>";
    return xml + "</Favorites>";
}

QByteArray withoutSection(QByteArray binder, const QByteArray &tag)
{
    const QByteArray endTag = "</" + tag + '>';
    const qsizetype start = binder.indexOf('<' + tag + '>');
    const qsizetype end = binder.indexOf(endTag, start);
    if (start < 0 || end < 0)
        qFatal("the binder has no such section");
    return binder.remove(start, end + endTag.size() - start);
}

int timersOf(QObject *object)
{
    return int(QAbstractEventDispatcher::instance()->registeredTimers(object).size());
}
