#include "StorageFixtures.h"
#include "TVLProjectFolderFormat.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QBuffer>
#include <QFileInfo>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

const QString VersionFile = u"Files/version.txt"_s;

QByteArray binderOfVersion(const QByteArray &version)
{
    return binderXml(itemXml(0, "DraftFolder", "Draft"), {}, version);
}

} // namespace

class TstFormatVersion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNumberIsMadeOfAllDigitsOfAText_data();
    void aNumberIsMadeOfAllDigitsOfAText();

    void theVersionFileDecidesTheFormat_data();
    void theVersionFileDecidesTheFormat();
    void theVersionFileMakesTheBinderUnread();
    void anUnreadableVersionFileGivesNoVersionAndStays();
    void withoutAVersionFileTheBinderDecidesTheFormat_data();
    void withoutAVersionFileTheBinderDecidesTheFormat();
    void aBinderOfGrammar10GivesFormat16AndAVersionFile();
    void aBinderWithAnUnreadableVersionGivesNoVersionAndNoFile();
    void aProjectWithoutABinderHasNoVersionAndGetsNoFile_data();
    void aProjectWithoutABinderHasNoVersionAndGetsNoFile();
    void theFormatIsFoundByBinderPathAndWithATrailingSlash_data();
    void theFormatIsFoundByBinderPathAndWithATrailingSlash();

    void writingAVersionKeepsWhatStandsBehindTheNumber_data();
    void writingAVersionKeepsWhatStandsBehindTheNumber();
    void writingALowerVersionWritesNothingAndFails_data();
    void writingALowerVersionWritesNothingAndFails();
    void writingAVersionMakesTheProjectsFolders();
    void writingAVersionFailsWhereItsFileCannotBe();

    void theBinderVersionIsReadFromTheFirstFileThatHasOne_data();
    void theBinderVersionIsReadFromTheFirstFileThatHasOne();
    void aZippedBinderVersionIsTakenFromTheEntryNamedLikeTheBinder();
    void theBinderVersionOfAProjectWithoutBindersIsEmpty();
    void theRootElementSaysTheRawVersion_data();
    void theRootElementSaysTheRawVersion();
    void projectInfoOfAFileThatIsNotThereIsEmpty();

    void compatibilityForReadingNeedsABinderAndAKnownFormat_data();
    void compatibilityForReadingNeedsABinderAndAKnownFormat();
    void compatibilityForOtherModesGoesByTheNameAlone_data();
    void compatibilityForOtherModesGoesByTheNameAlone();
    void aProjectThatDoesNotExistYetHasAPathAndCanBeWritten();
};

void TstFormatVersion::aNumberIsMadeOfAllDigitsOfAText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("number");

    QTest::newRow("plain") << u"23"_s << 23;
    QTest::newRow("with a dot") << u"2.3"_s << 23;
    QTest::newRow("scattered") << u"v2 3"_s << 23;
    QTest::newRow("older version") << u"1.8"_s << 18;
    QTest::newRow("with words") << u"18 (upgraded)"_s << 18;
    QTest::newRow("digits in the words") << u"18 (from 16)"_s << 1816;
    QTest::newRow("white space") << u" \t18\r\n"_s << 18;
    QTest::newRow("byte order mark") << u"\ufeff18"_s << 18;
    QTest::newRow("leading zeros") << u"0018"_s << 18;
    QTest::newRow("minus sign") << u"-18"_s << 18;
    QTest::newRow("zero") << u"0"_s << 0;
    QTest::newRow("empty") << QString() << 0;
    QTest::newRow("no digit") << u"eighteen"_s << 0;
    QTest::newRow("largest") << u"2147483647"_s << 2147483647;
    QTest::newRow("too large") << u"2147483648"_s << 0;
    QTest::newRow("far too large") << QString(1000, u'9') << 0;
    // They count as numbers, so they are kept, and then make a number that nothing can read.
    QTest::newRow("superscript") << u"18\u00b2"_s << 0;
    QTest::newRow("fraction") << u"18\u00bd"_s << 0;
    QTest::newRow("Roman numeral") << u"18\u2167"_s << 0;
}

void TstFormatVersion::aNumberIsMadeOfAllDigitsOfAText()
{
    QFETCH(QString, text);
    QFETCH(int, number);

    QCOMPARE(Format::extractVersionNumber(text), number);
}

void TstFormatVersion::theVersionFileDecidesTheFormat_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("version");

    QTest::newRow("16") << QByteArray("16") << 16;
    QTest::newRow("18") << QByteArray("18") << 18;
    QTest::newRow("23") << QByteArray("23") << 23;
    QTest::newRow("unknown") << QByteArray("99") << 99;
    QTest::newRow("with a line end") << QByteArray("18\r\n") << 18;
    QTest::newRow("with words") << QByteArray("18 (upgraded)") << 18;
    QTest::newRow("with a dot") << QByteArray("1.8") << 18;
    QTest::newRow("with a byte order mark") << QByteArray("\xef\xbb\xbf"
                                                          "18")
                                            << 18;
    QTest::newRow("not UTF-8") << QByteArray("18 \xff\xfe\xc3") << 18;
    QTest::newRow("empty") << QByteArray("") << 0;
    QTest::newRow("no digit") << QByteArray("none") << 0;
}

void TstFormatVersion::theVersionFileDecidesTheFormat()
{
    QFETCH(QByteArray, content);
    QFETCH(int, version);

    const TestProject project;
    project.writeFile(VersionFile, content);
    const auto before = project.files();
    QCOMPARE(int(Format::projectFormatVersion(project.path())), version);
    QCOMPARE(project.files(), before);
}

void TstFormatVersion::theVersionFileMakesTheBinderUnread()
{
    const TestProject project;
    project.writeFile(VersionFile, {});
    project.writeFile(u"project.tavelx"_s, binderOfVersion("1.5"));
    const auto before = project.files();
    QCOMPARE(int(Format::projectFormatVersion(project.path())), 0);
    QCOMPARE(project.files(), before);
}

void TstFormatVersion::anUnreadableVersionFileGivesNoVersionAndStays()
{
    const TestProject project;
    project.writeFile(VersionFile + u"/file"_s, "a folder in place of the file");
    project.writeFile(u"Novel.tavelx"_s, binderOfVersion("1.5"));
    const auto before = project.files();
    QCOMPARE(int(Format::projectFormatVersion(project.path())), 0);
    QCOMPARE(project.files(), before);
}

void TstFormatVersion::withoutAVersionFileTheBinderDecidesTheFormat_data()
{
    QTest::addColumn<QByteArray>("binderVersion");
    QTest::addColumn<int>("version");

    QTest::newRow("1.0") << QByteArray("1.0") << 16;
    QTest::newRow("1.5") << QByteArray("1.5") << 18;
    QTest::newRow("16") << QByteArray("16") << 16;
    QTest::newRow("23") << QByteArray("23") << 23;
    QTest::newRow("1") << QByteArray("1") << 1;
    QTest::newRow("0") << QByteArray("0") << 0;
    QTest::newRow("negative") << QByteArray("-18") << 0;
    QTest::newRow("other fraction") << QByteArray("1.8") << 0;
    QTest::newRow("word") << QByteArray("new") << 0;
    QTest::newRow("too large") << QByteArray("99999999999") << 0;
}

void TstFormatVersion::withoutAVersionFileTheBinderDecidesTheFormat()
{
    QFETCH(QByteArray, binderVersion);
    QFETCH(int, version);

    const TestProject project;
    project.writeFile(u"Novel.tavelx"_s, binderOfVersion(binderVersion));
    auto expected = project.files();
    if (version != 0)
        expected.insert(VersionFile, QByteArray::number(version));
    QCOMPARE(int(Format::projectFormatVersion(project.path())), version);
    QCOMPARE(project.files(), expected);
}

void TstFormatVersion::aBinderOfGrammar10GivesFormat16AndAVersionFile()
{
    const TestProject project;
    project.writeFile(u"Novel.tavelx"_s, binderOfVersion("1.0"));
    QCOMPARE(int(Format::projectFormatVersion(project.path())), 16);
    QCOMPARE(project.readFile(VersionFile), QByteArray("16"));
}

void TstFormatVersion::aBinderWithAnUnreadableVersionGivesNoVersionAndNoFile()
{
    const TestProject project;
    project.writeFile(u"Novel.tavelx"_s, "<TavelinorProject><Binder/></TavelinorProject>");
    QCOMPARE(int(Format::projectFormatVersion(project.path())), 0);
    QCOMPARE(project.files().keys(), QStringList(u"Novel.tavelx"_s));
}

void TstFormatVersion::aProjectWithoutABinderHasNoVersionAndGetsNoFile_data()
{
    QTest::addColumn<bool>("folderExists");

    QTest::newRow("empty folder") << true;
    QTest::newRow("no folder") << false;
}

void TstFormatVersion::aProjectWithoutABinderHasNoVersionAndGetsNoFile()
{
    QFETCH(bool, folderExists);

    const TestProject project;
    QVERIFY(!folderExists || QDir().mkpath(project.path()));
    QCOMPARE(int(Format::projectFormatVersion(project.path())), 0);
    QCOMPARE(QFileInfo::exists(project.path()), folderExists);
    QVERIFY(!folderExists || QDir(project.path()).isEmpty());
}

void TstFormatVersion::theFormatIsFoundByBinderPathAndWithATrailingSlash_data()
{
    QTest::addColumn<QString>("suffix");

    QTest::newRow("slash") << u"/"_s;
    QTest::newRow("binder") << u"/Novel.tavelx"_s;
}

void TstFormatVersion::theFormatIsFoundByBinderPathAndWithATrailingSlash()
{
    QFETCH(QString, suffix);

    const TestProject project;
    project.writeFile(u"Novel.tavelx"_s, binderOfVersion("1.5"));
    QCOMPARE(Format::projectFormatVersion(project.path() + suffix), TVL::FormatVersion18);
    QCOMPARE(project.readFile(VersionFile), QByteArray("18"));
    project.writeFile(VersionFile, "23");
    QCOMPARE(Format::projectFormatVersion(project.path() + suffix), TVL::FormatVersion23);
}

void TstFormatVersion::writingAVersionKeepsWhatStandsBehindTheNumber_data()
{
    QTest::addColumn<QByteArray>("oldContent");
    QTest::addColumn<int>("version");
    QTest::addColumn<QByteArray>("newContent");

    QTest::newRow("upgrade") << QByteArray("18 (upgraded)") << 23 << QByteArray("23 (upgraded)");
    QTest::newRow("same version") << QByteArray("18 (upgraded)") << 18
                                  << QByteArray("18 (upgraded)");
    QTest::newRow("line end") << QByteArray("16\n") << 18 << QByteArray("18\n");
    QTest::newRow("nothing behind") << QByteArray("16") << 18 << QByteArray("18");
    QTest::newRow("shorter number") << QByteArray("9") << 18 << QByteArray("18");
    QTest::newRow("empty") << QByteArray("") << 18 << QByteArray("18");
    QTest::newRow("beyond ASCII") << QByteArray("18 \xc3\xa9t\xc3\xa9") << 23
                                  << QByteArray("23 \xc3\xa9t\xc3\xa9");
    QTest::newRow("byte order mark") << QByteArray("\xef\xbb\xbf"
                                                   "18 x")
                                     << 23 << QByteArray("23 x");
}

void TstFormatVersion::writingAVersionKeepsWhatStandsBehindTheNumber()
{
    QFETCH(QByteArray, oldContent);
    QFETCH(int, version);
    QFETCH(QByteArray, newContent);

    const TestProject project;
    project.writeFile(VersionFile, oldContent);
    QVERIFY(Format::writeFormatVersion(project.path(), version));
    QCOMPARE(project.readFile(VersionFile), newContent);
}

void TstFormatVersion::writingALowerVersionWritesNothingAndFails_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("version");

    QTest::newRow("16 after 18") << QByteArray("18 (upgraded)") << 16;
    QTest::newRow("18 after 23") << QByteArray("23") << 18;
    QTest::newRow("18 after 1.9") << QByteArray("1.9") << 18;
}

void TstFormatVersion::writingALowerVersionWritesNothingAndFails()
{
    QFETCH(QByteArray, content);
    QFETCH(int, version);

    const TestProject project;
    project.writeFile(VersionFile, content);
    QVERIFY(!Format::writeFormatVersion(project.path(), version));
    QCOMPARE(project.readFile(VersionFile), content);
}

void TstFormatVersion::writingAVersionMakesTheProjectsFolders()
{
    const TestProject project;
    QVERIFY(Format::writeFormatVersion(project.path(), 18));
    QCOMPARE(project.readFile(VersionFile), QByteArray("18"));
}

void TstFormatVersion::writingAVersionFailsWhereItsFileCannotBe()
{
    const TestProject project;
    project.writeFile(VersionFile + u"/file"_s, "a folder in place of the file");
    QVERIFY(!Format::writeFormatVersion(project.path(), 18));
    QVERIFY(!Format::writeFormatVersion(project.path(VersionFile + u"/file/Novel.tavel"_s), 18));
}

void TstFormatVersion::theBinderVersionIsReadFromTheFirstFileThatHasOne_data()
{
    QTest::addColumn<QByteArray>("plain");
    QTest::addColumn<QByteArray>("autosave");
    QTest::addColumn<QByteArray>("backup");
    QTest::addColumn<QString>("version");

    const auto zipped = [](const QByteArray &binder) { return zipOf(u"Novel.tavelx"_s, binder); };
    const QByteArray none;
    const QByteArray silent = "<TavelinorProject/>";
    const QByteArray a = binderOfVersion("1.0");
    const QByteArray b = binderOfVersion("1.5");
    const QByteArray c = binderOfVersion("2.0");
    QTest::newRow("all") << a << zipped(b) << zipped(c) << u"1.0"_s;
    QTest::newRow("no plain binder") << none << zipped(b) << zipped(c) << u"1.5"_s;
    QTest::newRow("silent plain binder") << silent << zipped(b) << zipped(c) << u"1.5"_s;
    QTest::newRow("backup alone") << none << none << zipped(c) << u"2.0"_s;
    QTest::newRow("silent autosave") << none << zipped(silent) << zipped(c) << u"2.0"_s;
    QTest::newRow("autosave is no zip") << none << a << zipped(c) << u"2.0"_s;
    QTest::newRow("all silent") << silent << zipped(silent) << zipped(silent) << QString();
    QTest::newRow("plain binder cut off behind its root element")
        << a.first(a.indexOf("<Binder>")) << zipped(b) << none << u"1.0"_s;
    QTest::newRow("plain binder cut off in its root element")
        << a.first(a.indexOf("Version=")) << zipped(b) << none << u"1.5"_s;
}

void TstFormatVersion::theBinderVersionIsReadFromTheFirstFileThatHasOne()
{
    QFETCH(QByteArray, plain);
    QFETCH(QByteArray, autosave);
    QFETCH(QByteArray, backup);
    QFETCH(QString, version);

    const TestProject project;
    if (!plain.isEmpty())
        project.writeFile(u"Novel.tavelx"_s, plain);
    if (!autosave.isEmpty())
        project.writeFile(u"Files/binder.autosave"_s, autosave);
    if (!backup.isEmpty())
        project.writeFile(u"Files/binder.backup"_s, backup);
    QCOMPARE(Format::readProjectBinderVersion(project.path()), version);
}

void TstFormatVersion::aZippedBinderVersionIsTakenFromTheEntryNamedLikeTheBinder()
{
    const TestProject project;
    project.writeFile(u"Files/binder.autosave"_s,
                      zipOf({{u"Other.tavelx"_s, binderOfVersion("1.0"), {}},
                             {u"Novel.tavelx"_s, binderOfVersion("1.5"), {}}}));
    QCOMPARE(Format::readProjectBinderVersion(project.path()), u"1.5"_s);

    project.writeFile(u"Files/binder.autosave"_s, zipOf(u"Other.tavelx"_s, binderOfVersion("1.0")));
    QCOMPARE(Format::readProjectBinderVersion(project.path()), QString());
}

void TstFormatVersion::theBinderVersionOfAProjectWithoutBindersIsEmpty()
{
    const TestProject project;
    QCOMPARE(Format::readProjectBinderVersion(project.path()), QString());
    project.writeFile(u"Files/other"_s, {});
    QCOMPARE(Format::readProjectBinderVersion(project.path()), QString());
}

void TstFormatVersion::theRootElementSaysTheRawVersion_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("version");

    QTest::newRow("known") << binderOfVersion("1.5") << u"1.5"_s;
    QTest::newRow("unknown") << binderOfVersion("later") << u"later"_s;
    QTest::newRow("none") << QByteArray("<TavelinorProject/>") << QString();
    QTest::newRow("not XML") << QByteArray("mobile/binder.sync") << QString();
    QTest::newRow("nothing") << QByteArray() << QString();
}

void TstFormatVersion::theRootElementSaysTheRawVersion()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, version);

    QBuffer buffer(&content);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    QCOMPARE(Format::readBinderVersion(&buffer), version);

    const TestProject project;
    project.writeFile(u"Novel.tavelx"_s, content);
    const TVLProjectInfo info = Format::readBinderFileProjectInfo(project.binderPath());
    QCOMPARE(info.mVersion, version);
    QCOMPARE(int(info.mBinderVersion), int(TVL::toBinderVersion(version)));
}

void TstFormatVersion::projectInfoOfAFileThatIsNotThereIsEmpty()
{
    const TestProject project;
    const TVLProjectInfo info = Format::readBinderFileProjectInfo(project.binderPath());
    QVERIFY(info.mVersion.isEmpty());
    QCOMPARE(int(info.mBinderVersion), int(TVL::NoBinderVersion));
    QVERIFY(!info.mModified.isValid());
}

void TstFormatVersion::compatibilityForReadingNeedsABinderAndAKnownFormat_data()
{
    QTest::addColumn<QByteArray>("binder");
    QTest::addColumn<QByteArray>("version");
    QTest::addColumn<bool>("compatible");

    const QByteArray none;
    for (const char *version : {"16", "18", "23"})
        QTest::newRow(version) << binderOfVersion("1.5") << QByteArray(version) << true;
    for (const char *version : {"0", "17", "19", "24", "x"})
        QTest::newRow(version) << binderOfVersion("1.5") << QByteArray(version) << false;
    QTest::newRow("version of the binder") << binderOfVersion("1.5") << none << true;
    QTest::newRow("no version at all") << QByteArray("<TavelinorProject/>") << none << false;
    QTest::newRow("no binder") << none << QByteArray("18") << false;
    QTest::newRow("nothing") << none << none << false;
}

void TstFormatVersion::compatibilityForReadingNeedsABinderAndAKnownFormat()
{
    QFETCH(QByteArray, binder);
    QFETCH(QByteArray, version);
    QFETCH(bool, compatible);

    const TestProject project;
    if (!binder.isEmpty())
        project.writeFile(u"Novel.tavelx"_s, binder);
    if (!version.isEmpty())
        project.writeFile(VersionFile, version);
    for (const QString &path : {project.path(), project.path() + u'/', project.binderPath()})
        QCOMPARE(Format::isCompatible(QIODevice::ReadOnly, path), compatible);
}

void TstFormatVersion::compatibilityForOtherModesGoesByTheNameAlone_data()
{
    QTest::addColumn<QIODevice::OpenMode>("mode");
    QTest::addColumn<QString>("path");
    QTest::addColumn<bool>("compatible");

    const QIODevice::OpenMode write = QIODevice::WriteOnly;
    QTest::newRow("folder") << write << u"/nowhere/Novel.tavel"_s << true;
    QTest::newRow("binder") << write << u"/nowhere/Novel.tavelx"_s << true;
    QTest::newRow("folder in capitals") << write << u"/nowhere/Novel.TAVEL"_s << false;
    QTest::newRow("binder in capitals") << write << u"/nowhere/Novel.TAVELX"_s << false;
    QTest::newRow("other extension") << write << u"/nowhere/Novel.txt"_s << false;
    QTest::newRow("none") << write << u"/nowhere/Novel"_s << false;
    QTest::newRow("empty") << write << QString() << false;
    QTest::newRow("reading and writing")
        << QIODevice::OpenMode(QIODevice::ReadWrite) << u"/nowhere/Novel.tavel"_s << true;
    QTest::newRow("reading text") << (QIODevice::ReadOnly | QIODevice::Text)
                                  << u"/nowhere/Novel.tavel"_s << true;
    QTest::newRow("not open") << QIODevice::OpenMode(QIODevice::NotOpen)
                              << u"/nowhere/Novel.tavel"_s << true;
}

void TstFormatVersion::compatibilityForOtherModesGoesByTheNameAlone()
{
    QFETCH(QIODevice::OpenMode, mode);
    QFETCH(QString, path);
    QFETCH(bool, compatible);

    QCOMPARE(Format::isCompatible(mode, path), compatible);
}

void TstFormatVersion::aProjectThatDoesNotExistYetHasAPathAndCanBeWritten()
{
    const TestProject project;
    QCOMPARE(Format::calcEnclosingPath(project.path()), project.path());
    QVERIFY(Format::isCompatible(QIODevice::WriteOnly, project.path()));
    QVERIFY(!Format::isCompatible(QIODevice::ReadOnly, project.path()));
    QVERIFY(!QFileInfo::exists(project.path()));
}

TVL_TEST(TstFormatVersion)
#include "tst_formatversion.moc"
