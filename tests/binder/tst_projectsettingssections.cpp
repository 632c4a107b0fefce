#include "BinderSamples.h"
#include "TVLBinderReader.h"
#include "TVLBinderWriter.h"
#include "TVLProjectFolderFormat.h"
#include "TestBinderProject.h"
#include "TestProject.h"

#include "TestMain.h"

#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

/** An attribute or a text of a section, and what the words in it mean. */
struct Place
{
    QByteArray name;
    QByteArray section; ///< With `%` where the word stands.
    QList<QPair<QByteArray, QVariant>> words;
    QVariant fallback; ///< For any other word, and where there is none.
    std::function<QVariant(const TestBinderProject &)> get;
    QByteArray withoutPlace = {}; ///< The section where not even the place of the word is there.
};

QList<QPair<QByteArray, QVariant>> flagWords()
{
    return {{"Yes", true}, {"No", false}};
}

QList<QPair<QByteArray, QVariant>> countTypeWords()
{
    return {{"Characters", 0}, {"Words", 1}, {"Pages", 2}};
}

QList<QPair<QByteArray, QVariant>> numbers()
{
    return {{"0", 0}, {"-3", -3}, {"80000", 80000}, {"2147483647", 2147483647}};
}

Place draftPlace(const QByteArray &attribute, const QList<QPair<QByteArray, QVariant>> &words,
                 const QVariant &fallback,
                 const std::function<QVariant(const TVLDraftTarget &)> &get)
{
    return {"draft " + attribute,
            "<ProjectTargets><DraftTarget " + attribute + "='%'>5</DraftTarget></ProjectTargets>",
            words,
            fallback,
            [get](const TestBinderProject &project) { return get(project.mDraftTarget); },
            "<ProjectTargets><DraftTarget>5</DraftTarget></ProjectTargets>"};
}

Place sessionPlace(const QByteArray &attribute, const QList<QPair<QByteArray, QVariant>> &words,
                   const QVariant &fallback,
                   const std::function<QVariant(const TVLSessionTarget &)> &get)
{
    return {"session " + attribute,
            "<ProjectTargets><SessionTarget " + attribute
                + "='%'>5</SessionTarget></ProjectTargets>",
            words,
            fallback,
            [get](const TestBinderProject &project) { return get(project.mSessionTarget); },
            "<ProjectTargets><SessionTarget>5</SessionTarget></ProjectTargets>"};
}

const QList<Place> &places()
{
    using Draft = TVLDraftTarget;
    using Session = TVLSessionTarget;
    using Project = TestBinderProject;
    static const QList<Place> places = {
        {"field Wraps",
         "<CustomMetaDataSettings><MetaDataField Wraps='%'/></CustomMetaDataSettings>", flagWords(),
         false, [](const Project &p) { return p.mCustomMetaDataSettings.value(0).mWraps; },
         "<CustomMetaDataSettings><MetaDataField/></CustomMetaDataSettings>"},
        {"field Color",
         "<CustomMetaDataSettings><MetaDataField Color='%'/></CustomMetaDataSettings>",
         {{"1.000 0.000 0.000", QColor(255, 0, 0)}, {"0.000 0.000 0.000", QColor(0, 0, 0)}},
         QColor(),
         [](const Project &p) { return p.mCustomMetaDataSettings.value(0).mColor; },
         "<CustomMetaDataSettings><MetaDataField/></CustomMetaDataSettings>"},
        {"targets Notify", "<ProjectTargets Notify='%'/>", flagWords(), false,
         [](const Project &p) { return p.mNotifyTargets; }, "<ProjectTargets/>"},
        draftPlace("Type", countTypeWords(), 1, [](const Draft &t) { return t.mType; }),
        draftPlace("CountIncludedOnly", flagWords(), false,
                   [](const Draft &t) { return t.mCountIncludedOnly; }),
        draftPlace("CurrentCompileGroupOnly", flagWords(), false,
                   [](const Draft &t) { return t.mCurrentCompileGroupOnly; }),
        draftPlace("ShowOverrun", flagWords(), false,
                   [](const Draft &t) { return t.mShowOverrun; }),
        draftPlace("Buffer", {{"0", 0}, {"12", 12}, {"2147483647", 2147483647}}, 0,
                   [](const Draft &t) { return t.mBuffer; }),
        draftPlace("IgnoreDeadline", flagWords(), false,
                   [](const Draft &t) { return t.mIgnoreDeadline; }),
        sessionPlace("Type", countTypeWords(), 1, [](const Session &t) { return t.mType; }),
        sessionPlace("CountDraftOnly", flagWords(), false,
                     [](const Session &t) { return t.mCountDraftOnly; }),
        sessionPlace("AllowNegatives", flagWords(), false,
                     [](const Session &t) { return t.mAllowNegatives; }),
        sessionPlace("ResetType",
                     {{"Midnight", 0}, {"ProjectClose", 1}, {"NextDay", 2}, {"Never", 3}}, 0,
                     [](const Session &t) { return int(t.mResetType); }),
        sessionPlace("DeterminedFromDeadline", flagWords(), false,
                     [](const Session &t) { return t.mFromDeadline; }),
        sessionPlace("CanWriteOnDeadlineDate", flagWords(), false,
                     [](const Session &t) { return t.mCanWriteOnDeadlineDate; }),
        {"draft count", "<ProjectTargets><DraftTarget>%</DraftTarget></ProjectTargets>", numbers(),
         0, [](const Project &p) { return p.mDraftTarget.mCount; }, "<ProjectTargets/>"},
        {"session count", "<ProjectTargets><SessionTarget>%</SessionTarget></ProjectTargets>",
         numbers(), 0, [](const Project &p) { return p.mSessionTarget.mCount; },
         "<ProjectTargets/>"},
        {"completion Scope",
         "<AutoCompleteList><Completion Scope='%'/></AutoCompleteList>",
         {{"-2", -2}, {"-1", -1}, {"0", 0}, {"7", 7}, {"-3", -2}, {"-7", -2}, {"-2147483648", -2}},
         -2,
         [](const Project &p) {
             return p.mAutoCompleteList.value(0, {5, {}}).mScope;
         },
         "<AutoCompleteList><Completion/></AutoCompleteList>"},
        {"backup Exclude",
         "<BackupSettings><Exclude>%</Exclude></BackupSettings>",
         {{"Yes", false}, {"No", true}},
         true,
         [](const Project &p) { return p.mBackupIncluded; },
         "<BackupSettings/>"},
        {"backdrop item",
         "<FullScreenBackdrop Type='BinderID'>%</FullScreenBackdrop>",
         {{"0", 0}, {"2147483647", 2147483647}},
         QVariant(),
         [](const Project &p) { return p.mFullScreenBackdrop; },
         "<FullScreenBackdrop Type='BinderID'/>"},
        {"backdrop Type",
         "<FullScreenBackdrop Type='%'>7</FullScreenBackdrop>",
         {{"BinderID", 7}, {"Path", u"7"_s}},
         QVariant(),
         [](const Project &p) { return p.mFullScreenBackdrop; },
         "<FullScreenBackdrop>7</FullScreenBackdrop>"},
    };
    return places;
}

void addPlaceRows()
{
    QTest::addColumn<int>("place");
    for (int place = 0; place < places().size(); ++place)
        QTest::addRow("%s", places().at(place).name.constData()) << place;
}

QByteArray withWord(const Place &place, const QByteArray &word)
{
    QByteArray section = place.section;
    return section.replace('%', word);
}

QVariant readPlace(const Place &place, const QByteArray &section)
{
    TestBinderProject project;
    QString error;
    if (!project.read(binderXml({}, section), &error))
        qFatal("%s: %s", section.constData(), qPrintable(error));
    return place.get(project);
}

TVLMetaDataField fieldOf(const QString &id, const QString &title, bool wraps,
                         const QColor &color = {})
{
    TVLMetaDataField field;
    field.mId = id;
    field.mTitle = title;
    field.mWraps = wraps;
    field.mColor = color;
    return field;
}

/** The settings of a project that has nothing to say. */
QByteArray writtenTargets(const TVLDraftTarget &draft, const TVLSessionTarget &session = {})
{
    return written(
        [&](TVLBinderWriter *writer) { writer->writeProjectTargets(draft, session, false); });
}

QByteArray writtenBackdrop(const QVariant &value)
{
    return written([&](TVLBinderWriter *writer) { writer->writeFullScreenBackdrop(value); });
}

QByteArray items(int count)
{
    const QByteArray date = "'2021-02-03 04:05:06 +0000'";
    QByteArray xml;
    for (int id = 0; id < count; ++id) {
        xml += "<BinderItem ID='" + QByteArray::number(id) + "' UUID='"
            + QUuid(uint(id), 0, 0, 0x80, 0, 0, 0, 0, 0, 0, 1).toByteArray() + "' Created=" + date
            + " Modified=" + date + "/>";
    }
    return xml;
}

bool readFavorites(TestBinderProject *project, const QByteArray &content, QString *error = nullptr)
{
    return project->read(binderXml(items(5), "<Favorites>" + content + "</Favorites>"), error);
}

QByteArray writtenFavorites(const TestBinderProject &project)
{
    return written([&](TVLBinderWriter *writer) { writer->writeFavorites(&project); });
}

} // namespace

class TstProjectSettingsSections : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyWordIsReadAndComesBack_data();
    void everyWordIsReadAndComesBack();
    void anUnknownWordMeansTheDefault_data();
    void anUnknownWordMeansTheDefault();
    void whatIsMissingMeansTheDefault_data();
    void whatIsMissingMeansTheDefault();

    // Custom meta-data
    void customMetaDataSettingsAreWritten();
    void noFieldsAreWrittenAsAnEmptySection();
    void customMetaDataSettingsAreRead();

    // Properties
    void propertiesAreWrittenInTheirOrder();
    void onlyPropertiesThatSaySomethingAreWritten();
    void propertiesAreRead();
    void thePropertiesHaveTheNamesOfTheirTags();

    // Targets
    void targetsAreWritten();
    void targetsThatSayNothingAreWrittenWithTheirDefaults();
    void aBufferIsWrittenOnlyAboveZero();
    void aNumberWithoutAWordIsWrittenAsTheDefault();
    void targetsAreRead();
    void targetsStartFromTheirDefaults();

    // Favorites
    void favoritesAreWrittenInTheirOrder();
    void noFavoritesAreWrittenAsNothing();
    void aFavoriteThatNoItemHasIsNeverWritten();
    void withoutIdsInTheGrammarNoFavoritesAreWritten();
    void favoritesAreReadInTheirOrder();
    void aFavoriteThatNoItemHasFailsWithoutAText_data();
    void aFavoriteThatNoItemHasFailsWithoutAText();
    void aFavoriteThatNoItemHasFailsOnlyBehindItsSection();
    void noFavoriteIsFoundInABinderWithoutIds();
    void manyFavoritesSurvive();

    // Completion list
    void theCompletionListIsWritten();
    void aScopeBelowAllIsWrittenAsEverywhere();
    void theCompletionListIsRead();

    // Backups
    void backupSettingsAreWritten();
    void aBinderThatTellsOfBackupsIsModified_data();
    void aBinderThatTellsOfBackupsIsModified();

    // Backdrop
    void theBackdropIsWrittenByItsType_data();
    void theBackdropIsWrittenByItsType();
    void theBackdropIsRead_data();
    void theBackdropIsRead();

    // References
    void projectReferencesAreWritten();
    void noProjectReferencesAreWrittenAsAnEmptySection();
    void projectReferencesAreRead();
    void projectReferencesElsewhereFail();

    void charactersThatXmlCannotHoldAreNoDanger();
};

void TstProjectSettingsSections::everyWordIsReadAndComesBack_data()
{
    addPlaceRows();
}

void TstProjectSettingsSections::everyWordIsReadAndComesBack()
{
    QFETCH(int, place);
    const DebugLog log;
    const Place &row = places().at(place);
    for (const auto &[word, value] : row.words) {
        TestBinderProject project;
        QVERIFY(project.read(binderXml({}, withWord(row, word))));
        QCOMPARE(row.get(project), value);
        TestBinderProject reread;
        QVERIFY(reread.read(project.write()));
        QCOMPARE(row.get(reread), value);
        QCOMPARE(reread.write(), project.write());
    }
}

void TstProjectSettingsSections::anUnknownWordMeansTheDefault_data()
{
    addPlaceRows();
}

void TstProjectSettingsSections::anUnknownWordMeansTheDefault()
{
    QFETCH(int, place);
    const Place &row = places().at(place);
    QList<QByteArray> unknown = {"", "?", "1.5", "2147483648", "-99999999999999999999", "nan"};
    for (const auto &[word, value] : row.words) {
        if (word.toLower() != word)
            unknown += {word.toLower(), word.toUpper(), word + ' ', word + word};
    }
    for (const QByteArray &word : std::as_const(unknown))
        QCOMPARE(readPlace(row, withWord(row, word)), row.fallback);
}

void TstProjectSettingsSections::whatIsMissingMeansTheDefault_data()
{
    addPlaceRows();
}

void TstProjectSettingsSections::whatIsMissingMeansTheDefault()
{
    QFETCH(int, place);
    const Place &row = places().at(place);
    QCOMPARE(readPlace(row, row.withoutPlace), row.fallback);
}

void TstProjectSettingsSections::customMetaDataSettingsAreWritten()
{
    const QByteArray xml = written([](TVLBinderWriter *writer) {
        writer->writeCustomMetaDataSettings(
            {fieldOf(u"p&v"_s, u"Who & where"_s, true, Qt::red), fieldOf(u"day"_s, {}, false)});
    });
    QCOMPARE(xml,
             QByteArray("<CustomMetaDataSettings>"
                        "<MetaDataField ID=\"p&amp;v\" Wraps=\"Yes\" Color=\"1.000 0.000 0.000\">"
                        "Who &amp; where</MetaDataField>"
                        "<MetaDataField ID=\"day\" Wraps=\"No\"></MetaDataField>"
                        "</CustomMetaDataSettings>"));
}

void TstProjectSettingsSections::noFieldsAreWrittenAsAnEmptySection()
{
    QCOMPARE(written([](TVLBinderWriter *writer) { writer->writeCustomMetaDataSettings({}); }),
             QByteArray("<CustomMetaDataSettings/>"));
}

void TstProjectSettingsSections::customMetaDataSettingsAreRead()
{
    TestBinderProject project;
    project.mCustomMetaDataSettings = {fieldOf(u"old"_s, u"Old"_s, true)};
    QVERIFY(project.read(
        binderXml({},
                  "<CustomMetaDataSettings><MetaDataField ID='a' Wraps='Yes' Color='1 0 0'>A"
                  "</MetaDataField><Foo><MetaDataField ID='no'/></Foo><MetaDataField>B"
                  "<Foo>no</Foo></MetaDataField></CustomMetaDataSettings>")));
    QCOMPARE(project.mCustomMetaDataSettings,
             TVLCustomMetaDataSettings(
                 {fieldOf(u"a"_s, u"A"_s, true, QColor(255, 0, 0)), fieldOf({}, u"B"_s, false)}));
}

void TstProjectSettingsSections::propertiesAreWrittenInTheirOrder()
{
    TestBinderProject project;
    for (const QString &tag : {u"FirstName"_s, u"LastName"_s, u"FullName"_s, u"AbbreviatedTitle"_s,
                               u"ProjectTitle"_s, u"Publisher"_s})
        project.setProjectProperty(tag, u"<"_s + tag);
    QCOMPARE(written([&](TVLBinderWriter *writer) { writer->writeProjectProperties(&project); }),
             QByteArray("<ProjectProperties><ProjectTitle>&lt;ProjectTitle</ProjectTitle>"
                        "<AbbreviatedTitle>&lt;AbbreviatedTitle</AbbreviatedTitle>"
                        "<FullName>&lt;FullName</FullName><LastName>&lt;LastName</LastName>"
                        "<FirstName>&lt;FirstName</FirstName></ProjectProperties>"));
}

void TstProjectSettingsSections::onlyPropertiesThatSaySomethingAreWritten()
{
    const auto writtenProperties = [](const TestBinderProject &project) {
        return written([&](TVLBinderWriter *writer) { writer->writeProjectProperties(&project); });
    };
    TestBinderProject project;
    QCOMPARE(writtenProperties(project), QByteArray());
    project.setProjectProperty(u"FullName"_s, {});
    QCOMPARE(writtenProperties(project), QByteArray());
    project.setProjectProperty(u"LastName"_s, u" "_s);
    QCOMPARE(writtenProperties(project),
             QByteArray("<ProjectProperties><LastName> </LastName></ProjectProperties>"));
}

void TstProjectSettingsSections::propertiesAreRead()
{
    TestBinderProject project;
    project.setProjectProperty(u"FullName"_s, u"stays"_s);
    QVERIFY(project.read(
        binderXml({},
                  "<ProjectProperties><FirstName>Ann</FirstName><Publisher>No</Publisher>"
                  "<Foo><LastName>No</LastName></Foo><ProjectTitle>One</ProjectTitle>"
                  "<ProjectTitle> T&amp;wo </ProjectTitle></ProjectProperties>")));
    const QMap<QString, QString> expected = {
        {u"FirstName"_s, u"Ann"_s}, {u"FullName"_s, u"stays"_s}, {u"ProjectTitle"_s, u" T&wo "_s}};
    QCOMPARE(project.mProperties, expected);
}

void TstProjectSettingsSections::thePropertiesHaveTheNamesOfTheirTags()
{
    using Format = TVLProjectFolderFormat;
    TestBinderProject project;
    QVERIFY(project.read(richBinder()));
    QCOMPARE(project.projectProperty(Format::ProjectTitleTag), u"The <long> way"_s);
    QCOMPARE(project.projectProperty(Format::AbbreviatedTitleTag), u"Way"_s);
    QCOMPARE(project.projectProperty(Format::FullNameTag), u"Ann Lee"_s);
    QCOMPARE(project.projectProperty(Format::LastNameTag), u"Lee"_s);
    QCOMPARE(project.projectProperty(Format::FirstNameTag), u"Ann"_s);
}

void TstProjectSettingsSections::targetsAreWritten()
{
    TVLDraftTarget draft;
    draft.mCount = 90000;
    draft.mType = int(TVLCountType::Characters);
    draft.mCountIncludedOnly = true;
    draft.mCurrentCompileGroupOnly = true;
    draft.mShowOverrun = true;
    draft.mBuffer = 50;
    draft.mDeadline = u"2030-01-01 \"noon\""_s;
    draft.mIgnoreDeadline = true;
    TVLSessionTarget session;
    session.mCount = -4;
    session.mType = int(TVLCountType::Pages);
    session.mCountDraftOnly = true;
    session.mAllowNegatives = true;
    session.mResetType = TVLSessionTarget::ProjectClose;
    session.mFromDeadline = true;
    session.mCanWriteOnDeadlineDate = true;
    session.mWritingDays = u"1,2"_s;
    QCOMPARE(written([&](TVLBinderWriter *writer) {
                 writer->writeProjectTargets(draft, session, true);
             }),
             QByteArray(
                 "<ProjectTargets Notify=\"Yes\"><DraftTarget Type=\"Characters\" "
                 "CountIncludedOnly=\"Yes\" CurrentCompileGroupOnly=\"Yes\" ShowOverrun=\"Yes\" "
                 "Buffer=\"50\" Deadline=\"2030-01-01 &quot;noon&quot;\" IgnoreDeadline=\"Yes\">"
                 "90000</DraftTarget><SessionTarget Type=\"Pages\" CountDraftOnly=\"Yes\" "
                 "AllowNegatives=\"Yes\" ResetType=\"ProjectClose\" DeterminedFromDeadline=\"Yes\" "
                 "CanWriteOnDeadlineDate=\"Yes\" WritingDays=\"1,2\">-4</SessionTarget>"
                 "</ProjectTargets>"));
}

void TstProjectSettingsSections::targetsThatSayNothingAreWrittenWithTheirDefaults()
{
    QCOMPARE(writtenTargets({}),
             QByteArray("<ProjectTargets Notify=\"No\"><DraftTarget Type=\"Words\" "
                        "CountIncludedOnly=\"No\" CurrentCompileGroupOnly=\"No\" "
                        "IgnoreDeadline=\"No\">0</DraftTarget><SessionTarget Type=\"Words\" "
                        "CountDraftOnly=\"No\" AllowNegatives=\"No\" ResetType=\"Midnight\" "
                        "DeterminedFromDeadline=\"No\" CanWriteOnDeadlineDate=\"No\" "
                        "WritingDays=\"\">0</SessionTarget></ProjectTargets>"));
}

void TstProjectSettingsSections::aBufferIsWrittenOnlyAboveZero()
{
    TVLDraftTarget draft;
    for (const int buffer : {0, -1, -2147483647}) {
        draft.mBuffer = buffer;
        QVERIFY(!writtenTargets(draft).contains("Buffer"));
    }
    draft.mBuffer = 1;
    QVERIFY(writtenTargets(draft).contains("Buffer=\"1\""));
}

void TstProjectSettingsSections::aNumberWithoutAWordIsWrittenAsTheDefault()
{
    TVLDraftTarget draft;
    TVLSessionTarget session;
    for (const int type : {-1, 3, 2147483647}) {
        draft.mType = type;
        session.mType = type;
        session.mResetType = TVLSessionTarget::ResetType(type == 3 ? 4 : type);
        const QByteArray xml = writtenTargets(draft, session);
        QCOMPARE(xml.count("Type=\"Words\""), 2);
        QCOMPARE(xml.count("ResetType=\"Midnight\""), 1);
    }
}

void TstProjectSettingsSections::targetsAreRead()
{
    TestBinderProject project;
    QVERIFY(project.read(binderXml(
        {},
        "<ProjectTargets Notify='Yes'><Foo><DraftTarget>1</DraftTarget></Foo>"
        "<SessionTarget WritingDays=' 1 ' ResetType='Never'>7<Foo>8</Foo></SessionTarget>"
        "<DraftTarget Deadline='some day' Type='Pages'>12</DraftTarget></ProjectTargets>")));
    TVLDraftTarget draft;
    draft.mCount = 12;
    draft.mType = int(TVLCountType::Pages);
    draft.mDeadline = u"some day"_s;
    TVLSessionTarget session;
    session.mCount = 7;
    session.mWritingDays = u" 1 "_s;
    session.mResetType = TVLSessionTarget::Never;
    QCOMPARE(project.mDraftTarget, draft);
    QCOMPARE(project.mSessionTarget, session);
    QVERIFY(project.mNotifyTargets);
}

void TstProjectSettingsSections::targetsStartFromTheirDefaults()
{
    TestBinderProject project;
    project.mDraftTarget.mBuffer = 5;
    project.mSessionTarget.mAllowNegatives = true;
    project.mNotifyTargets = true;
    QVERIFY(project.read(binderXml({}, "<ProjectTargets><SessionTarget/></ProjectTargets>")));
    QCOMPARE(project.mDraftTarget, TVLDraftTarget());
    QCOMPARE(project.mSessionTarget, TVLSessionTarget());
    QVERIFY(!project.mNotifyTargets);
}

void TstProjectSettingsSections::favoritesAreWrittenInTheirOrder()
{
    TestBinderProject project;
    QVERIFY(project.read(binderXml(items(5))));
    project.mFavorites = {4, 0, 2};
    QCOMPARE(writtenFavorites(project),
             QByteArray("<Favorites><BinderID>4</BinderID><BinderID>0</BinderID>"
                        "<BinderID>2</BinderID></Favorites>"));
}

void TstProjectSettingsSections::noFavoritesAreWrittenAsNothing()
{
    QCOMPARE(writtenFavorites(TestBinderProject()), QByteArray());
}

void TstProjectSettingsSections::aFavoriteThatNoItemHasIsNeverWritten()
{
    TestBinderProject project;
    QVERIFY(project.read(binderXml(items(5))));
    project.mFavorites = {5, -1, 3, 2147483647};
    QCOMPARE(writtenFavorites(project),
             QByteArray("<Favorites><BinderID>3</BinderID></Favorites>"));
    project.mFavorites = {5, -1};
    QCOMPARE(writtenFavorites(project), QByteArray());
}

void TstProjectSettingsSections::withoutIdsInTheGrammarNoFavoritesAreWritten()
{
    const DebugLog log;
    // Items that were made since the project was opened have an id, and lose it with the saving.
    TestBinderProject project;
    QVERIFY(project.read(binderXml(items(5))));
    project.mFavorites = {1, 2};
    project.mFormatVersion = TVL::FormatVersion23;
    const QByteArray binder = project.write();
    QVERIFY(!binder.contains("<Favorites"));
    TestBinderProject reread;
    QVERIFY(reread.read(binder));
}

void TstProjectSettingsSections::favoritesAreReadInTheirOrder()
{
    TestBinderProject project;
    QVERIFY(readFavorites(&project,
                          "<BinderID>3</BinderID><Foo><BinderID>99</BinderID></Foo>"
                          "<BinderID> 0 </BinderID><BinderID>4<Foo>2</Foo></BinderID>"));
    QCOMPARE(project.mFavorites, QList<int>({3, 0, 4}));
    QVERIFY(project.mRoot->mChildren.at(4)->mIsFavorite);
    QVERIFY(!project.mRoot->mChildren.at(2)->mIsFavorite);
}

void TstProjectSettingsSections::aFavoriteThatNoItemHasFailsWithoutAText_data()
{
    QTest::addColumn<QByteArray>("text");
    for (const char *text : {"5", "-1", "", "x", "1.0", "2147483648", "4294967296"})
        QTest::newRow(text) << QByteArray(text);
}

void TstProjectSettingsSections::aFavoriteThatNoItemHasFailsWithoutAText()
{
    QFETCH(QByteArray, text);
    DebugLog log;
    for (const QByteArray &content :
         {"<BinderID>" + text + "</BinderID>",
          "<BinderID>1</BinderID><BinderID>" + text + "</BinderID><BinderID>2</BinderID>"}) {
        TestBinderProject project;
        QString error;
        QVERIFY(!readFavorites(&project, content, &error));
        QCOMPARE(error, QString());
        QVERIFY(!project.mIsReading);
    }
    QCOMPARE(log.lines(), QStringList());
}

void TstProjectSettingsSections::aFavoriteThatNoItemHasFailsOnlyBehindItsSection()
{
    const DebugLog log;
    TestBinderProject project;
    QString error;
    QVERIFY(!project.read("<TavelinorProject Version='1.5'><Binder/><Favorites>"
                          "<BinderID>99</BinderID><BinderID></Favorites></TavelinorProject>",
                          &error));
    QVERIFY(!error.isEmpty());
}

void TstProjectSettingsSections::noFavoriteIsFoundInABinderWithoutIds()
{
    TestBinderProject project;
    QString error;
    QVERIFY(!project.read(
        binderXml(items(5), "<Favorites><BinderID>1</BinderID></Favorites>", "2.0"), &error));
    QCOMPARE(error, QString());
}

void TstProjectSettingsSections::manyFavoritesSurvive()
{
    const DebugLog log;
    TestBinderProject project;
    QVERIFY(project.read(binderXml(items(2000))));
    for (int id = 1999; id >= 0; --id)
        project.mFavorites.append(id);
    TestBinderProject reread;
    QVERIFY(reread.read(project.write()));
    QCOMPARE(reread.mFavorites, project.mFavorites);
}

void TstProjectSettingsSections::theCompletionListIsWritten()
{
    QCOMPARE(written([](TVLBinderWriter *writer) {
                 writer->writeAutoCompleteList({{-2, u"A & B"_s}, {-1, {}}, {12, u" x "_s}});
             }),
             QByteArray("<AutoCompleteList><Completion Scope=\"-2\">A &amp; B</Completion>"
                        "<Completion Scope=\"-1\"></Completion><Completion Scope=\"12\"> x "
                        "</Completion></AutoCompleteList>"));
    QCOMPARE(written([](TVLBinderWriter *writer) { writer->writeAutoCompleteList({}); }),
             QByteArray("<AutoCompleteList/>"));
}

void TstProjectSettingsSections::aScopeBelowAllIsWrittenAsEverywhere()
{
    QVERIFY(written([](TVLBinderWriter *writer) {
                writer->writeAutoCompleteList({{-3, u"x"_s}});
            }).contains("Scope=\"-2\""));
}

void TstProjectSettingsSections::theCompletionListIsRead()
{
    TestBinderProject project;
    project.mAutoCompleteList = {{3, u"old"_s}};
    QVERIFY(project.read(
        binderXml({},
                  "<AutoCompleteList><Completion>a</Completion><Foo><Completion>no</Completion>"
                  "</Foo><Completion Scope='-7'>b</Completion><Completion Scope='-1'>c</Completion>"
                  "<Completion Scope='2'> d<Foo>no</Foo>\n</Completion></AutoCompleteList>")));
    QCOMPARE(
        project.mAutoCompleteList,
        QList<TVLAutoCompleteItem>({{-2, u"a"_s}, {-2, u"b"_s}, {-1, u"c"_s}, {2, u" d\n"_s}}));
}

void TstProjectSettingsSections::backupSettingsAreWritten()
{
    QCOMPARE(written([](TVLBinderWriter *writer) { writer->writeBackupSettings(true); }),
             QByteArray("<BackupSettings><Exclude>No</Exclude></BackupSettings>"));
    QCOMPARE(written([](TVLBinderWriter *writer) { writer->writeBackupSettings(false); }),
             QByteArray("<BackupSettings><Exclude>Yes</Exclude></BackupSettings>"));
}

void TstProjectSettingsSections::aBinderThatTellsOfBackupsIsModified_data()
{
    QTest::addColumn<QByteArray>("section");
    QTest::addColumn<bool>("modified");
    QTest::newRow("excluded") << QByteArray(
        "<BackupSettings><Exclude>Yes</Exclude></BackupSettings>")
                              << true;
    QTest::newRow("included") << QByteArray(
        "<BackupSettings><Exclude>No</Exclude></BackupSettings>")
                              << true;
    QTest::newRow("says nothing") << QByteArray("<BackupSettings/>") << true;
    QTest::newRow("no section") << QByteArray() << false;
    QTest::newRow("elsewhere") << QByteArray("<Foo><BackupSettings/></Foo>") << false;
}

void TstProjectSettingsSections::aBinderThatTellsOfBackupsIsModified()
{
    QFETCH(QByteArray, section);
    QFETCH(bool, modified);
    const DebugLog log;
    TestBinderProject project;
    QVERIFY(project.read(binderXml({}, section)));
    QCOMPARE(project.mIsModified, modified);
}

void TstProjectSettingsSections::theBackdropIsWrittenByItsType_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QByteArray>("xml");
    QTest::newRow("item") << QVariant(0)
                          << QByteArray("<FullScreenBackdrop Type=\"BinderID\">0"
                                        "</FullScreenBackdrop>");
    QTest::newRow("path") << QVariant(u"/a & b.png"_s)
                          << QByteArray("<FullScreenBackdrop Type=\"Path\">/a &amp; b.png"
                                        "</FullScreenBackdrop>");
    QTest::newRow("path of digits")
        << QVariant(u"7"_s)
        << QByteArray("<FullScreenBackdrop Type=\"Path\">7</FullScreenBackdrop>");
    QTest::newRow("nothing") << QVariant() << QByteArray();
    QTest::newRow("no item") << QVariant(-1) << QByteArray();
    QTest::newRow("no path") << QVariant(QString()) << QByteArray();
    QTest::newRow("nothing XML can hold") << QVariant(u"\u0001"_s) << QByteArray();
    QTest::newRow("neither") << QVariant(1.5) << QByteArray();
}

void TstProjectSettingsSections::theBackdropIsWrittenByItsType()
{
    QFETCH(QVariant, value);
    QFETCH(QByteArray, xml);
    QCOMPARE(writtenBackdrop(value), xml);
    TestBinderProject project;
    QVERIFY(project.read(binderXml({}, xml)));
    QCOMPARE(project.mFullScreenBackdrop, xml.isEmpty() ? QVariant() : value);
}

void TstProjectSettingsSections::theBackdropIsRead_data()
{
    QTest::addColumn<QByteArray>("xml");
    QTest::addColumn<QVariant>("value");
    const QVariant before(u"before"_s);
    QTest::newRow("item") << QByteArray("Type='BinderID'>7") << QVariant(7);
    QTest::newRow("path") << QByteArray("Type='Path'> /x ") << QVariant(u" /x "_s);
    QTest::newRow("negative item") << QByteArray("Type='BinderID'>-1") << before;
    QTest::newRow("item that is no number") << QByteArray("Type='BinderID'>x") << before;
    QTest::newRow("item beyond numbers") << QByteArray("Type='BinderID'>2147483648") << before;
    QTest::newRow("empty item") << QByteArray("Type='BinderID'>") << before;
    QTest::newRow("empty path") << QByteArray("Type='Path'>") << before;
    QTest::newRow("unknown type") << QByteArray("Type='Colour'>7") << before;
    QTest::newRow("no type") << QByteArray(">7") << before;
}

void TstProjectSettingsSections::theBackdropIsRead()
{
    QFETCH(QByteArray, xml);
    QFETCH(QVariant, value);
    TestBinderProject project;
    project.mFullScreenBackdrop = u"before"_s;
    QVERIFY(project.read(binderXml({}, "<FullScreenBackdrop " + xml + "</FullScreenBackdrop>")));
    QCOMPARE(project.mFullScreenBackdrop.typeId(), value.typeId());
    QCOMPARE(project.mFullScreenBackdrop, value);
}

void TstProjectSettingsSections::projectReferencesAreWritten()
{
    TVLReference inside;
    inside.mTitle = u"In & out"_s;
    inside.setInternalLink(4);
    TVLReference outside;
    outside.mTitle = u"Out"_s;
    outside.setUrl(QUrl(u"https://example.org/a b?c&d"_s));
    QCOMPARE(written([&](TVLBinderWriter *writer) {
                 writer->writeProjectReferences({inside, outside});
             }),
             QByteArray("<ProjectReferences><Reference BinderID=\"4\">In &amp; out</Reference>"
                        "<Reference Destination=\"https://example.org/a%20b?c&amp;d\">Out"
                        "</Reference></ProjectReferences>"));
}

void TstProjectSettingsSections::noProjectReferencesAreWrittenAsAnEmptySection()
{
    QCOMPARE(written([](TVLBinderWriter *writer) { writer->writeProjectReferences({}); }),
             QByteArray("<ProjectReferences/>"));
}

void TstProjectSettingsSections::projectReferencesAreRead()
{
    TestBinderProject project;
    QVERIFY(project.read(
        binderXml({},
                  "<ProjectReferences><Reference BinderID='4'>In</Reference><Foo><Reference/></Foo>"
                  "<Reference Destination='https://example.org/a%20b'>Out</Reference>"
                  "</ProjectReferences>")));
    QCOMPARE(project.mProjectReferences.size(), 2);
    QCOMPARE(project.mProjectReferences.at(0).mInternalLink, 4);
    QCOMPARE(project.mProjectReferences.at(0).mTitle, u"In"_s);
    QCOMPARE(project.mProjectReferences.at(1).mUrl, QUrl(u"https://example.org/a%20b"_s));
    QCOMPARE(project.mProjectReferences.at(1).mTitle, u"Out"_s);
}

void TstProjectSettingsSections::projectReferencesElsewhereFail()
{
    const DebugLog log;
    TVLBinderReader reader;
    reader.addData("<References><Reference/></References>");
    QVERIFY(reader.readNextStartElement());
    QList<TVLReference> references;
    QVERIFY(!reader.readProjectReferences(&references));
    QVERIFY(references.isEmpty());
    QCOMPARE(reader.errorString(),
             u"Unexpected tag References on line 1.  Expected tag ProjectReferences"_s);
}

void TstProjectSettingsSections::charactersThatXmlCannotHoldAreNoDanger()
{
    const QString text = u"a\u0001\r\n\t\ufffeb"_s + QChar(0xd800);
    TestBinderProject project;
    project.mInfo.mModified = sampleModified();
    project.mCustomMetaDataSettings = {fieldOf(text, text, true)};
    project.mProperties = {{u"FullName"_s, text}, {u"LastName"_s, u"\u0001\u0002"_s}};
    project.mDraftTarget.mDeadline = text;
    project.mSessionTarget.mWritingDays = text;
    project.mAutoCompleteList = {{0, text}};
    project.mFullScreenBackdrop = text;
    TVLReference reference;
    reference.mTitle = text;
    project.mProjectReferences = {reference};
    const QByteArray binder = project.write();
    TestBinderProject reread;
    QString error;
    QVERIFY2(reread.read(binder, &error), qPrintable(error));
    const QString kept = u"a\r\n\t\ufffdb\ufffd"_s;
    QCOMPARE(reread.mCustomMetaDataSettings.value(0), fieldOf(kept, kept, true));
    QCOMPARE(reread.mProperties, (QMap<QString, QString>{{u"FullName"_s, kept}}));
    QCOMPARE(reread.mDraftTarget.mDeadline, kept);
    QCOMPARE(reread.mSessionTarget.mWritingDays, kept);
    QCOMPARE(reread.mAutoCompleteList.value(0).mText, kept);
    QCOMPARE(reread.mFullScreenBackdrop, QVariant(kept));
    QCOMPARE(reread.mProjectReferences.value(0).mTitle, kept);
    QCOMPARE(reread.write(), binder);

    // Nothing but such characters is nothing.
    project.mDraftTarget.mDeadline = u"\u0001"_s;
    QVERIFY(!project.write().contains("Deadline=\"\""));
}

TVL_TEST(TstProjectSettingsSections)
#include "tst_projectsettingssections.moc"
