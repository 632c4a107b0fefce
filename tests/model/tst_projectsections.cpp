#include "FilledProject.h"
#include "StorageFixtures.h"
#include "TVLProjectFolderFormat.h"
#include "TestMain.h"

#include <QPageLayout>
#include <QPrinter>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Model = TVLProjectModel;
using Format = TVLProjectFolderFormat;
using Ids = QList<int>;

const QString BinderFile = u"Novel.tavelx"_s;
const QString SyncFile = u"Mobile/binder.sync"_s;

/** A binder without what every save changes. */
QString withoutSaveStamp(const QByteArray &binder)
{
    const qsizetype endOfRootTag = binder.indexOf("<Binder>");
    QString root = QString::fromUtf8(binder.left(endOfRootTag));
    root.remove(QRegularExpression(u" (ModID|Modified)=\"[^\"]*\""_s));
    return root + QString::fromUtf8(binder.mid(endOfRootTag));
}

} // namespace

class TstProjectSections : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // All of them
    void everythingSurvivesSavingAndOpening();
    void savingAgainChangesTheStampAlone();
    void absentSectionsLeaveTheDefaults();
    void openingAloneDoesNotModifyTheProject();
    void sectionsMayStandInFrontOfTheItems();
    void nothingOfAnUnreadableBinderIsLeft();

    // Others
    void propertiesOfTheProjectAreDynamic_data();
    void propertiesOfTheProjectAreDynamic();
    void emptyPropertiesAreNotWritten();
    void targetsAreNotifiedOnDemand_data();
    void targetsAreNotifiedOnDemand();
    void notificationIsMarkedWhenItChanges();
    void theBackdropIsAnItemOrAPath_data();
    void theBackdropIsAnItemOrAPath();
    void thePaperSurvivesAsItsWord_data();
    void thePaperSurvivesAsItsWord();
    void userDataKeepsItsBytes();
    void userDataWithoutItsEndTagIsLostOnSaving();

    // What items hold
    void repeatedFieldsLeaveTheValuesOfItems();
    void repeatedLabelsLeaveThoseOfItems();
    void absentFieldsLeaveTheValuesOfItems();

    // Mobile projects
    void aMobileBinderHasTheFirstSectionsAlone();
};

// --- All of them

void TstProjectSections::everythingSurvivesSavingAndOpening()
{
    const TestProject project;
    const auto model = filledProject(project);
    // Else nothing would be shown by what is equal.
    QCOMPARE(differences(model.get(), blankModel().get()), valueNames());
    const auto reopened = project.open();
    QVERIFY(reopened);
    QCOMPARE(differences(reopened.get(), model.get()), QStringList());
    QVERIFY(haveSameItems(reopened.get(), model.get()));
    QCOMPARE(mapsOutOfStep(reopened.get()), QString());
    QCOMPARE(reopened->favorites(),
             QModelIndexList({reopened->index(5), reopened->index(3), reopened->index(4)}));
}

void TstProjectSections::savingAgainChangesTheStampAlone()
{
    const TestProject project;
    filledProject(project).reset();
    const QByteArray first = project.readFile(BinderFile);
    for (int pass = 0; pass < 2; ++pass) {
        const auto model = project.open();
        QVERIFY(model && model->save(true));
        const QByteArray again = project.readFile(BinderFile);
        QVERIFY(again != first);
        QCOMPARE(withoutSaveStamp(again), withoutSaveStamp(first));
    }
}

void TstProjectSections::absentSectionsLeaveTheDefaults()
{
    const auto model = openedWith({});
    QVERIFY(model);
    QCOMPARE(model->customMetaDataSettings().ids(), QStringList());
    QCOMPARE(model->projectTitle(), QString());
    QCOMPARE(model->draftTarget(), TVLDraftTarget());
    QCOMPARE(model->sessionTarget(), TVLSessionTarget());
    QVERIFY(!model->notifyTargets());
    QCOMPARE(model->favoriteIds(), Ids());
    QCOMPARE(model->autoCompleteStrings(), QStringList());
    QVERIFY(model->backupIncluded());
    QVERIFY(!model->fullScreenBackdrop().isValid());
    QVERIFY(!model->hasProjectReferences());
    QCOMPARE(pageOf(model.get()), pageOf(blankModel().get()));
    QCOMPARE(model->userProjectData(), QString());
    QVERIFY(model->isSaved());
}

void TstProjectSections::openingAloneDoesNotModifyTheProject()
{
    const TestProject project;
    filledProject(project).reset();
    project.writeFile(BinderFile, withoutSection(project.readFile(BinderFile), "BackupSettings"));
    const auto model = project.open();
    QVERIFY(model && model->isSaved());
    QCOMPARE(timersOf(model.get()), 0);
    const auto before = project.files();
    QVERIFY(model->save());
    QCOMPARE(project.files(), before);
}

void TstProjectSections::sectionsMayStandInFrontOfTheItems()
{
    const TestProject project;
    project.writeFile(
        BinderFile,
        "<TavelinorProject Version=\"1.5\"><AutoCompleteList><Completion Scope=\"3\">Ann"
        "</Completion></AutoCompleteList><CustomMetaDataSettings><MetaDataField ID=\"pov\" "
        "Wraps=\"No\">Who</MetaDataField></CustomMetaDataSettings><LabelSettings><Labels>"
        "<Label ID=\"7\" Color=\"1 0 0\">x</Label></Labels></LabelSettings><ProjectReferences>"
        "<Reference BinderID=\"4\">In</Reference></ProjectReferences>"
            + favoritesXml({"5", "3"}) + "<Binder>" + someItems() + "</Binder></TavelinorProject>");
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(model->autoCompleteStrings(), QStringList{u"Ann"_s});
    QCOMPARE(model->customMetaDataSettings().ids(), QStringList{u"pov"_s});
    QCOMPARE(model->projectReferences(), QList<TVLReference>{toItem(4, u"In"_s)});
    QCOMPARE(TVLLabel::findLabelId(7, model->labels()).mTitle, u"x"_s);
    QCOMPARE(model->favoriteIds(), Ids({5, 3}));
    QCOMPARE(model->totalNodesCount(), 7);
}

void TstProjectSections::nothingOfAnUnreadableBinderIsLeft()
{
    const TestProject project;
    filledProject(project).reset();
    const QByteArray filled = project.readFile(BinderFile);
    project.writeFile(BinderFile, filled.left(filled.lastIndexOf("<UserProjectData>")));
    project.writeFile(u"Files/binder.autosave"_s, zipOf(BinderFile, binderXml(someItems())));
    const auto model = project.open();
    QVERIFY(model);
    const auto plain = openedWith({});
    // Every project gets collections with identities and colours of its own.
    QCOMPARE(differences(model.get(), plain.get()), QStringList{u"collections"_s});
    QCOMPARE(model->collections().size(), plain->collections().size());
    QVERIFY(haveSameItems(model.get(), plain.get()));
}

// --- Others

namespace {

struct PropertyRow
{
    const char *tag;
    QString (TVLProjectModel::*get)() const;
    void (TVLProjectModel::*set)(const QString &);
};

constexpr PropertyRow PropertyRows[] = {
    {"ProjectTitle", &Model::projectTitle, &Model::setProjectTitle},
    {"AbbreviatedTitle", &Model::projectAbbreviatedTitle, &Model::setProjectAbbreviatedTitle},
    {"FullName", &Model::authorFullName, &Model::setAuthorFullName},
    {"LastName", &Model::authorSurname, &Model::setAuthorSurname},
    {"FirstName", &Model::authorForename, &Model::setAuthorForename},
};

} // namespace

void TstProjectSections::propertiesOfTheProjectAreDynamic_data()
{
    QTest::addColumn<int>("row");
    for (int row = 0; row < int(std::size(PropertyRows)); ++row)
        QTest::newRow(PropertyRows[row].tag) << row;
}

void TstProjectSections::propertiesOfTheProjectAreDynamic()
{
    QFETCH(const int, row);
    const auto &[tag, get, set] = PropertyRows[row];
    const TestProject project;
    {
        const auto model = openedWith(project,
                                      "<ProjectProperties><" + QByteArray(tag) + ">A &amp; B</"
                                          + tag + "></ProjectProperties>");
        QVERIFY(model);
        QCOMPARE(model->property(tag), QVariant(u"A & B"_s));
        QCOMPARE((model.get()->*get)(), u"A & B"_s);
        QVERIFY(model->isSaved());
        int properties = 0;
        for (const PropertyRow &other : PropertyRows)
            properties += model->property(other.tag).isValid() ? 1 : 0;
        QCOMPARE(properties, 1);
        (model.get()->*set)(u"<C>"_s);
        QVERIFY(model->isModified());
        QVERIFY(model->save());
    }
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(model->property(tag), QVariant(u"<C>"_s));
}

void TstProjectSections::emptyPropertiesAreNotWritten()
{
    const TestProject project;
    const auto model = project.create();
    QVERIFY(!project.readFile(BinderFile).contains("ProjectProperties"));
    model->setAuthorForename(u"Ann"_s);
    QVERIFY(model->save());
    QVERIFY(project.readFile(BinderFile).contains("<FirstName>Ann</FirstName>"));
    QVERIFY(!project.readFile(BinderFile).contains("FullName"));
    model->setAuthorForename(QString());
    QVERIFY(model->save());
    QVERIFY(!project.readFile(BinderFile).contains("ProjectProperties"));
}

void TstProjectSections::targetsAreNotifiedOnDemand_data()
{
    QTest::addColumn<QByteArray>("section");
    QTest::addColumn<bool>("notify");
    QTest::newRow("absent") << QByteArray() << false;
    QTest::newRow("yes") << QByteArray("<ProjectTargets Notify=\"Yes\"/>") << true;
    QTest::newRow("no") << QByteArray("<ProjectTargets Notify=\"No\"/>") << false;
    QTest::newRow("not said") << QByteArray("<ProjectTargets/>") << false;
}

void TstProjectSections::targetsAreNotifiedOnDemand()
{
    QFETCH(const QByteArray, section);
    QFETCH(const bool, notify);
    const TestProject project;
    {
        const auto model = openedWith(project, section);
        QVERIFY(model);
        QCOMPARE(model->notifyTargets(), notify);
        QCOMPARE(model->property("notifyTargets").toBool(), notify);
        QVERIFY(model->isSaved());
        model->setNotifyTargets(!notify);
        QVERIFY(model->save());
    }
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(model->notifyTargets(), !notify);
}

void TstProjectSections::notificationIsMarkedWhenItChanges()
{
    const auto model = blankModel();
    const SignalLog log(model.get());
    model->setNotifyTargets(false);
    QCOMPARE(log.lines(), QStringList());
    model->setNotifyTargets(true);
    QCOMPARE(model->property("notifyTargets"), QVariant(true));
    QCOMPARE(log.lines(), QStringList{u"modified"_s});
    TVLProjectModelTestAccess::setSaved(model.get());
    model->setNotifyTargets(true);
    QVERIFY(model->isSaved());
    // Whoever sets the property itself is heard as well.
    QVERIFY(!model->setProperty("notifyTargets", false));
    QVERIFY(!model->notifyTargets());
}

void TstProjectSections::theBackdropIsAnItemOrAPath_data()
{
    QTest::addColumn<QVariant>("backdrop");
    QTest::newRow("none") << QVariant();
    QTest::newRow("the first item") << QVariant(0);
    QTest::newRow("an item") << QVariant(5);
    QTest::newRow("an item that isn't there") << QVariant(999);
    QTest::newRow("a path") << QVariant(u"/pictures/A & <B>.png"_s);
    QTest::newRow("a path with blanks") << QVariant(u" C:\\pictures\\my map.png "_s);
}

void TstProjectSections::theBackdropIsAnItemOrAPath()
{
    QFETCH(const QVariant, backdrop);
    const TestProject project;
    {
        const auto model = project.create();
        model->setFullScreenBackdrop(backdrop);
        QVERIFY(model->save(true));
    }
    QCOMPARE(project.readFile(BinderFile).contains("FullScreenBackdrop"), backdrop.isValid());
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(model->fullScreenBackdrop(), backdrop);
    QCOMPARE(model->fullScreenBackdrop().typeId(), backdrop.typeId());
}

void TstProjectSections::thePaperSurvivesAsItsWord_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QByteArray>("word");
    QTest::addColumn<int>("sizeAfter");
    QTest::newRow("A0") << int(QPageSize::A0) << QByteArray("A0") << int(QPageSize::A0);
    QTest::newRow("A1") << int(QPageSize::A1) << QByteArray("A2") << int(QPageSize::A1);
    QTest::newRow("A2") << int(QPageSize::A2) << QByteArray("A2") << int(QPageSize::A1);
    QTest::newRow("A3") << int(QPageSize::A3) << QByteArray("A3") << int(QPageSize::A3);
    QTest::newRow("Letter") << int(QPageSize::Letter) << QByteArray("Letter")
                            << int(QPageSize::Letter);
    QTest::newRow("without a word") << int(QPageSize::B1) << QByteArray("A4") << int(QPageSize::A4);
}

void TstProjectSections::thePaperSurvivesAsItsWord()
{
    QFETCH(const int, size);
    QFETCH(const QByteArray, word);
    QFETCH(const int, sizeAfter);
    const TestProject project;
    {
        const auto model = project.create();
        auto *printer = new QPrinter(QPrinter::PrinterResolution);
        printer->setPageSize(QPageSize(QPageSize::PageSizeId(size)));
        model->setPrinter(printer);
        QVERIFY(model->save(true));
    }
    QVERIFY(project.readFile(BinderFile).contains("<PaperType>" + word + "</PaperType>"));
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(int(model->printer()->pageLayout().pageSize().id()), sizeAfter);
}

void TstProjectSections::userDataKeepsItsBytes()
{
    const TestProject project;
    filledProject(project).reset();
    for (int pass = 0; pass < 2; ++pass) {
        const QByteArray binder = project.readFile(BinderFile);
        QVERIFY(binder.contains("\n    " + oddUserData().toUtf8()));
        QCOMPARE(binder.count("UserProjectData"), 2);
        const auto model = project.open();
        QVERIFY(model);
        QCOMPARE(model->userProjectData(), oddUserData());
        QVERIFY(model->save(true));
    }
}

void TstProjectSections::userDataWithoutItsEndTagIsLostOnSaving()
{
    const TestProject project;
    const auto expected = filledProject(project);
    QByteArray binder = project.readFile(BinderFile);
    binder.replace("</UserProjectData>", "</UserProjectData >");
    project.writeFile(BinderFile, binder);
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(differences(model.get(), expected.get()), QStringList{u"user data"_s});
    QVERIFY(model->save(true));
    QVERIFY(!project.readFile(BinderFile).contains("UserProjectData"));
    QVERIFY(haveSameItems(model.get(), expected.get()));
}

// --- What items hold

void TstProjectSections::repeatedFieldsLeaveTheValuesOfItems()
{
    const TestProject project;
    const auto expected = filledProject(project);
    QByteArray binder = project.readFile(BinderFile);
    const qsizetype end = binder.indexOf("<ProjectTargets");
    QVERIFY(end > 0);
    binder.insert(end,
                  "<CustomMetaDataSettings><MetaDataField ID=\"day\">Day</MetaDataField>"
                  "</CustomMetaDataSettings><CustomMetaDataSettings/>");
    project.writeFile(BinderFile, binder);
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(differences(model.get(), expected.get()), QStringList{u"fields"_s});
    QCOMPARE(model->customMetaDataSettings().ids(), QStringList());
    QVERIFY(haveSameItems(model.get(), expected.get()));
    QCOMPARE(model->customMetaData(model->index(4), u"day"_s), u"Monday"_s);
}

void TstProjectSections::repeatedLabelsLeaveThoseOfItems()
{
    const TestProject project;
    const auto expected = filledProject(project);
    QByteArray binder = project.readFile(BinderFile);
    const qsizetype end = binder.indexOf("<ProjectTargets");
    QVERIFY(end > 0);
    binder.insert(
        end,
        "<LabelSettings><Labels><Label ID=\"50\" Color=\"1 0 0\">x</Label></Labels>"
        "</LabelSettings><StatusSettings><StatusItems><Status ID=\"50\">x</Status></StatusItems>"
        "</StatusSettings>");
    project.writeFile(BinderFile, binder);
    const auto model = project.open();
    QVERIFY(model);
    QCOMPARE(model->labels().size(), 2);
    QCOMPARE(model->labels().at(1).mId, 50);
    QCOMPARE(model->statusItems().size(), 2);
    QCOMPARE(model->labelIdentity(model->index(4)), 7);
    QCOMPARE(model->statusIdentity(model->index(4)), 3);
    // Also the times of their items.
    QVERIFY(haveSameItems(model.get(), expected.get()));
}

void TstProjectSections::absentFieldsLeaveTheValuesOfItems()
{
    const TestProject project;
    const auto expected = filledProject(project);
    project.writeFile(BinderFile,
                      withoutSection(project.readFile(BinderFile), "CustomMetaDataSettings"));
    for (int pass = 0; pass < 2; ++pass) {
        const auto model = project.open();
        QVERIFY(model);
        QCOMPARE(model->customMetaDataSettings().ids(), QStringList());
        QVERIFY(haveSameItems(model.get(), expected.get()));
        QVERIFY(model->save(true));
    }
}

// --- Mobile projects

void TstProjectSections::aMobileBinderHasTheFirstSectionsAlone()
{
    const TestProject project;
    project.writeFile(SyncFile, binderXml(someItems()));
    const auto open = [&] {
        return TestModel(Format::openMobileSyncProject(project.path(), nullptr, nullptr));
    };
    const auto model = open();
    QVERIFY(model);
    fillProject(model.get());
    QVERIFY(model->save(true));

    const QByteArray binder = project.readFile(SyncFile);
    for (const char *tag : {"LabelSettings", "StatusSettings", "TemplateFolderUUID"})
        QCOMPARE(binder.count(QByteArray("\n    <") + tag), 1);
    for (const char *tag :
         {"Collections", "Keywords", "CustomMetaDataSettings", "ProjectProperties",
          "ProjectTargets", "Favorites", "AutoCompleteList", "BackupSettings", "FullScreenBackdrop",
          "ProjectReferences", "PrintSettings", "UserProjectData"})
        QVERIFY2(!binder.contains(QByteArray("\n    <") + tag), tag);
    const auto reopened = open();
    QVERIFY(reopened);
    QCOMPARE(differences(reopened.get(), model.get()), valueNames(false));
    QVERIFY(reopened->isSaved());
}

TVL_TEST(TstProjectSections)
#include "tst_projectsections.moc"
