#include "BinderSamples.h"
#include "TestBinderProject.h"
#include "TestProject.h"

#include "TestMain.h"

#include <QPrinter>
#include <QRandomGenerator>
#include <QTest>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

/** A binder in pieces: its root's start, the elements in it, and the end. */
struct Pieces
{
    QByteArray head;
    QList<QByteArray> sections;
    QByteArray tail;

    [[nodiscard]] QByteArray join() const { return head + sections.join() + tail; }
};

/** The rich binder, which is indented: what stands at the first level begins a section. */
Pieces richPieces()
{
    const QByteArray binder = richBinder();
    const auto nextStart = [&binder](qsizetype from) {
        qsizetype start = binder.indexOf("\n    <", from);
        while (start >= 0 && binder.at(start + 6) == '/')
            start = binder.indexOf("\n    <", start + 1);
        return start;
    };
    Pieces pieces;
    const qsizetype end = binder.indexOf("\n</TavelinorProject>");
    qsizetype start = nextStart(0);
    pieces.head = binder.first(start);
    while (start >= 0) {
        const qsizetype next = nextStart(start + 1);
        pieces.sections.append(binder.sliced(start, (next < 0 ? end : next) - start));
        start = next;
    }
    pieces.tail = binder.sliced(end);
    return pieces;
}

QByteArray tagOf(const QByteArray &section)
{
    const QByteArray start = section.trimmed();
    const auto isEnd = [](char ch) { return ch == ' ' || ch == '>'; };
    return start.sliced(1, std::find_if(start.cbegin(), start.cend(), isEnd) - start.cbegin() - 1);
}

int indexOfSection(const QList<QByteArray> &sections, const QByteArray &tag)
{
    const auto found =
        std::find_if(sections.cbegin(), sections.cend(),
                     [&tag](const QByteArray &section) { return tagOf(section) == tag; });
    return int(found - sections.cbegin());
}

/** What a project that has read a binder writes. */
QByteArray readAndWritten(const QByteArray &binder)
{
    TestBinderProject project;
    QString error;
    if (!project.read(binder, &error))
        return "not read: " + error.toUtf8();
    project.mUserProjectData = richUserProjectData();
    return project.write();
}

void addSectionRows(const QList<QByteArray> &except = {})
{
    QTest::addColumn<int>("section");
    const QList<QByteArray> sections = richPieces().sections;
    for (int section = 0; section < sections.size(); ++section) {
        const QByteArray tag = tagOf(sections.at(section));
        if (!except.contains(tag))
            QTest::addRow("%s", tag.constData()) << section;
    }
}

/** A project that counts how often it is given what replaces something. */
class CountingProject : public TestBinderProject
{
public:
    [[nodiscard]] bool adoptSection(TVLBinderSection section) override
    {
        if (section == TVLBinderSection::CustomMetaDataSettings) {
            ++mFieldChanges;
            mHadItems = !mUuidMap.isEmpty();
        }
        return TestBinderProject::adoptSection(section);
    }

    int mFieldChanges = 0;
    bool mHadItems = false;
};

} // namespace

class TstSectionOrder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theRichBinderHasAllSections();

    void eachSectionMayStandBeforeTheItems_data();
    void eachSectionMayStandBeforeTheItems();
    void allSectionsMayStandBeforeTheItems();
    void sectionsMayStandInAnyOrder();
    void eachSectionMayStandAlone_data();
    void eachSectionMayStandAlone();
    void eachSectionMayBeAbsent_data();
    void eachSectionMayBeAbsent();

    void theSameSectionTwiceIsTheSameAsOnce_data();
    void theSameSectionTwiceIsTheSameAsOnce();
    void itemsAndKeywordsTwiceAreReadTwice();
    void anEmptySectionBeforeTheRealOneCountsForNothing_data();
    void anEmptySectionBeforeTheRealOneCountsForNothing();
    void theLastOfRepeatedSectionsCounts();
    void favoritesOfRepeatedSectionsComeTogether();
    void fieldsOfRepeatedSectionsAreSetOnceAndLast();

    void aFavoriteBeforeTheItemsThatNoItemHasFailsWithoutAText();
    void aTemplateFolderBeforeTheItemsIsFoundByIdAndUuid();
    void aLaterTemplateFolderThatIsNoItemIsIgnored();
    void aFailedReadLeavesCollectionsAndFavoritesAlone();
};

void TstSectionOrder::theRichBinderHasAllSections()
{
    const Pieces pieces = richPieces();
    QCOMPARE(pieces.join(), richBinder());
    QList<QByteArray> tags;
    for (const QByteArray &section : pieces.sections)
        tags.append(tagOf(section));
    const QList<QByteArray> inWritingOrder = {"Binder",
                                              "LabelSettings",
                                              "StatusSettings",
                                              "TemplateFolderUUID",
                                              "Collections",
                                              "Keywords",
                                              "CustomMetaDataSettings",
                                              "ProjectProperties",
                                              "ProjectTargets",
                                              "Favorites",
                                              "AutoCompleteList",
                                              "BackupSettings",
                                              "FullScreenBackdrop",
                                              "ProjectReferences",
                                              "PrintSettings",
                                              "UserProjectData"};
    QCOMPARE(tags, inWritingOrder);
    QCOMPARE(readAndWritten(richBinder()), richBinder());
}

void TstSectionOrder::eachSectionMayStandBeforeTheItems_data()
{
    addSectionRows();
}

void TstSectionOrder::eachSectionMayStandBeforeTheItems()
{
    QFETCH(int, section);
    Pieces pieces = richPieces();
    pieces.sections.move(section, 0);
    QCOMPARE(readAndWritten(pieces.join()), richBinder());
}

void TstSectionOrder::allSectionsMayStandBeforeTheItems()
{
    Pieces pieces = richPieces();
    pieces.sections.move(0, pieces.sections.size() - 1);
    QCOMPARE(readAndWritten(pieces.join()), richBinder());
}

void TstSectionOrder::sectionsMayStandInAnyOrder()
{
    QRandomGenerator random(7);
    Pieces pieces = richPieces();
    for (int i = 0; i < 100; ++i) {
        std::shuffle(pieces.sections.begin(), pieces.sections.end(), random);
        QCOMPARE(readAndWritten(pieces.join()), richBinder());
    }
}

void TstSectionOrder::eachSectionMayStandAlone_data()
{
    addSectionRows();
}

void TstSectionOrder::eachSectionMayStandAlone()
{
    QFETCH(int, section);
    Pieces pieces = richPieces();
    const QByteArray tag = tagOf(pieces.sections.at(section));
    pieces.sections = {pieces.sections.at(section)};
    TestBinderProject project;
    QString error;
    // Favorites are the one section that can't do without the items.
    const bool ok = project.read(pieces.join(), &error);
    QCOMPARE(ok, tag != "Favorites");
    QCOMPARE(error, QString());
    const QByteArray binder = project.write();
    TestBinderProject reread;
    QVERIFY(reread.read(binder));
    QCOMPARE(reread.write(), binder);
}

void TstSectionOrder::eachSectionMayBeAbsent_data()
{
    addSectionRows();
}

void TstSectionOrder::eachSectionMayBeAbsent()
{
    QFETCH(int, section);
    Pieces pieces = richPieces();
    const QByteArray tag = tagOf(pieces.sections.takeAt(section));
    TestBinderProject project;
    QCOMPARE(project.read(pieces.join()), tag != "Binder"); // The favorites are in it.
    if (tag == "Binder")
        return;
    project.mUserProjectData = richUserProjectData();

    // All others are there as they were.
    const QByteArray binder = project.write();
    const QList<QByteArray> sections = richPieces().sections;
    for (int i = 1; i < sections.size(); ++i) {
        if (i != section)
            QVERIFY2(binder.contains(sections.at(i)), sections.at(i).constData());
        else if (tag != "UserProjectData")
            QVERIFY2(!binder.contains(sections.at(i)), sections.at(i).constData());
    }
}

void TstSectionOrder::theSameSectionTwiceIsTheSameAsOnce_data()
{
    addSectionRows({"Binder", "Keywords"}); // These add to what is there.
}

void TstSectionOrder::theSameSectionTwiceIsTheSameAsOnce()
{
    QFETCH(int, section);
    Pieces pieces = richPieces();
    pieces.sections.prepend(pieces.sections.at(section));
    pieces.sections.append(pieces.sections.at(0));
    QCOMPARE(readAndWritten(pieces.join()), richBinder());
}

void TstSectionOrder::itemsAndKeywordsTwiceAreReadTwice()
{
    Pieces pieces = richPieces();
    pieces.sections.append(pieces.sections.at(0));
    pieces.sections.append(pieces.sections.at(indexOfSection(pieces.sections, "Keywords")));
    TestBinderProject project;
    QVERIFY(project.read(pieces.join()));
    QCOMPARE(project.mRoot->mChildren.size(), 6);
    QCOMPARE(project.mKeywords.size(), 8);
    const QByteArray binder = project.write();
    TestBinderProject reread;
    QVERIFY(reread.read(binder));
    QCOMPARE(reread.write(), binder);
}

void TstSectionOrder::anEmptySectionBeforeTheRealOneCountsForNothing_data()
{
    addSectionRows();
}

void TstSectionOrder::anEmptySectionBeforeTheRealOneCountsForNothing()
{
    QFETCH(int, section);
    Pieces pieces = richPieces();
    pieces.sections.prepend('<' + tagOf(pieces.sections.at(section)) + "/>");
    QCOMPARE(readAndWritten(pieces.join()), richBinder());
}

void TstSectionOrder::theLastOfRepeatedSectionsCounts()
{
    Pieces pieces = richPieces();
    pieces.sections += {
        "<LabelSettings><Title>L</Title></LabelSettings>",
        "<StatusSettings><Title>S</Title></StatusSettings>",
        "<TemplateFolderID>4</TemplateFolderID>",
        "<Collections><Collection ID='c'/></Collections>",
        "<CustomMetaDataSettings><MetaDataField ID='f'/></CustomMetaDataSettings>",
        "<ProjectProperties><LastName>N</LastName></ProjectProperties>",
        "<ProjectTargets><DraftTarget>1</DraftTarget></ProjectTargets>",
        "<AutoCompleteList><Completion>c</Completion></AutoCompleteList>",
        "<BackupSettings/>",
        "<FullScreenBackdrop Type='Path'>p</FullScreenBackdrop>",
        "<ProjectReferences><Reference>r</Reference></ProjectReferences>",
        "<PrintSettings><PaperType>A5</PaperType></PrintSettings>",
    };
    TestBinderProject project;
    QVERIFY(project.read(pieces.join()));
    QCOMPARE(project.mLabelTitle, u"L"_s);
    QVERIFY(project.mLabels.isEmpty());
    QCOMPARE(project.mStatusTitle, u"S"_s);
    QVERIFY(project.mStatusItems.isEmpty());
    QCOMPARE(project.mTemplateFolderUuid, project.mIdMap.value(4));
    QCOMPARE(project.mCollections.size(), 1);
    QCOMPARE(project.mCustomMetaDataSettings.ids(), QStringList(u"f"_s));
    QCOMPARE(project.projectProperty(u"LastName"_s), u"N"_s);
    QCOMPARE(project.projectProperty(u"FirstName"_s), u"Ann"_s);
    QCOMPARE(project.mDraftTarget.mCount, 1);
    QCOMPARE(project.mSessionTarget, TVLSessionTarget());
    QVERIFY(!project.mNotifyTargets);
    QCOMPARE(project.mAutoCompleteList.size(), 1);
    QVERIFY(project.mBackupIncluded);
    QCOMPARE(project.mFullScreenBackdrop, QVariant(u"p"_s));
    QCOMPARE(project.mProjectReferences.size(), 1);
    QCOMPARE(project.printer()->pageLayout().pageSize().id(), QPageSize::A5);
}

void TstSectionOrder::favoritesOfRepeatedSectionsComeTogether()
{
    Pieces pieces = richPieces();
    pieces.sections.prepend("<Favorites><BinderID>6</BinderID><BinderID>3</BinderID></Favorites>");
    TestBinderProject project;
    QVERIFY(project.read(pieces.join()));
    QCOMPARE(project.mFavorites, QList<int>({6, 5, 3}));
}

void TstSectionOrder::fieldsOfRepeatedSectionsAreSetOnceAndLast()
{
    // A field that goes takes with it what items hold in it: one that is only replaced within the
    // file must not come to the project at all.
    Pieces pieces = richPieces();
    pieces.sections.prepend(
        "<CustomMetaDataSettings><MetaDataField ID='gone'/></CustomMetaDataSettings>");
    CountingProject project;
    QVERIFY(project.read(pieces.join()));
    QCOMPARE(project.mFieldChanges, 1);
    QVERIFY(project.mHadItems);
    QCOMPARE(project.mCustomMetaDataSettings.ids(), QStringList({u"pov"_s, u"day"_s}));
}

void TstSectionOrder::aFavoriteBeforeTheItemsThatNoItemHasFailsWithoutAText()
{
    Pieces pieces = richPieces();
    pieces.sections.prepend("<Favorites><BinderID>99</BinderID></Favorites>");
    TestBinderProject project;
    QString error;
    QVERIFY(!project.read(pieces.join(), &error));
    QCOMPARE(error, QString());
    // All that is told in the file was read before.
    QCOMPARE(project.mUuidMap.size(), 11);
    QCOMPARE(project.mAutoCompleteList.size(), 3);
    QVERIFY(!project.mIsReading);
}

void TstSectionOrder::aTemplateFolderBeforeTheItemsIsFoundByIdAndUuid()
{
    Pieces pieces = richPieces();
    pieces.sections.removeAt(indexOfSection(pieces.sections, "TemplateFolderUUID"));
    for (const QByteArray &section :
         {QByteArray("<TemplateFolderID>3</TemplateFolderID>"),
          QByteArray("<TemplateFolderUUID>00000000-0000-4000-8000-000000000002"
                     "</TemplateFolderUUID>")}) {
        Pieces before = pieces;
        before.sections.prepend(section);
        TestBinderProject project;
        QVERIFY(project.read(before.join()));
        QCOMPARE(project.mTemplateFolderUuid, project.mIdMap.value(3));
        QVERIFY(project.mUuidMap.value(project.mTemplateFolderUuid)->mIsTemplateFolder);
    }
}

void TstSectionOrder::aLaterTemplateFolderThatIsNoItemIsIgnored()
{
    Pieces pieces = richPieces();
    pieces.sections.append("<TemplateFolderID>99</TemplateFolderID>");
    QCOMPARE(readAndWritten(pieces.join()), richBinder());
}

void TstSectionOrder::aFailedReadLeavesCollectionsAndFavoritesAlone()
{
    const DebugLog log;
    Pieces pieces = richPieces();
    pieces.sections.append("<LabelSettings><Labels><Foo/></Labels></LabelSettings>");
    TestBinderProject project;
    QVERIFY(!project.read(pieces.join()));
    QVERIFY(project.mCollections.isEmpty());
    QVERIFY(project.mFavorites.isEmpty());
    QVERIFY(project.mTemplateFolderUuid.isNull());
}

TVL_TEST(TstSectionOrder)
#include "tst_sectionorder.moc"
