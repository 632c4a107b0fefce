#include "ChecksumFixtures.h"
#include "DocumentFixtures.h"
#include "StorageFixtures.h"
#include "TVLProjectChecksums.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QDir>
#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Checksums = TVLProjectChecksums;

const QByteArray EmptyHex = "da39a3ee5e6b4b0d3255bfef95601890afd80709";
const QByteArray EmptyHash = QByteArray::fromHex(EmptyHex);
const QByteArray UuidText = "4F0A1F3B-8C70-4F6E-9B3F-0D2B6A2A1C44";
const QUuid Uuid(QString::fromLatin1(UuidText));
const QString FileName = u"test.checksums"_s;

/** What a file of that content loads as. */
ChecksumMap loaded(const TestProject &project, const QByteArray &content)
{
    project.writeFile(FileName, content);
    ChecksumMap checksums;
    if (!Checksums::loadChecksumFile(project.path(FileName), &checksums))
        qFatal("the file could not be read");
    return checksums;
}

/** Such as a project has, with some odd ones among them. */
ChecksumMap someRecords(int count)
{
    QRandomGenerator random(12);
    ChecksumMap checksums;
    for (int i = 0; i < count; ++i) {
        const QByteArray hash = hashOf(QByteArray::number(i));
        if (i % 3 == 0)
            checksums.insert(key(u"%1_notes.rtf"_s.arg(random.bounded(1'000'000))), hash);
        else
            checksums.insert(key(random.bounded(100'000), u"content.rtf"_s), hash);
    }
    checksums.insert(key(u"\u6f22\u5b57 \U0001d11e.links"_s), {});
    checksums.insert(key(7, u"a b/c"_s), "x");
    return checksums;
}

} // namespace

class TstChecksumFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyRecordIsALine_data();
    void everyRecordIsALine();
    void savingReplacesTheWholeFile();
    void whatCannotBeWrittenIsAFailure();

    void everyLineIsARecord_data();
    void everyLineIsARecord();
    void aHugeLineIsALineLikeAnyOther();
    void whatWasSavedIsLoaded();
    void damageIsLimitedToItsLines();
    void aFileThatIsCutOffLosesItsEnd();
    void loadingReplacesWhatTheMapHeld();
    void anUnreadableFileIsAnEmptyMap();
    void thereHasToBeAMap();

    void textKeysAreSplitAtTheirUuid_data();
    void textKeysAreSplitAtTheirUuid();
    void aMapContainsTheUuidsOfItsKeys();
};

void TstChecksumFiles::everyRecordIsALine_data()
{
    QTest::addColumn<ChecksumMap>("checksums");
    QTest::addColumn<QByteArray>("content");

    const auto add = [](const char *name, const ChecksumMap &checksums, const QByteArray &content) {
        QTest::newRow(name) << checksums << content;
    };
    add("no records", {}, "");
    add("numbered file", {{key(u"12.rtf"_s), EmptyHash}}, "12.rtf=" + EmptyHex + '\n');
    add("file in an item's folder", {{{Uuid, u"content.rtf"_s}, EmptyHash}},
        UuidText + "/content.rtf=" + EmptyHex + '\n');
    add("lower case", {{key(u"1.rtf"_s), "\xab\xcd\xef\x01"}}, "1.rtf=abcdef01\n");
    add("unreadable file", {{key(u"1.rtf"_s), {}}}, "1.rtf=\n");
    add("Unicode", {{key(u"\u00e9.links"_s), "a"}}, "\xc3\xa9.links=61\n");
    add("in the order of the map",
        {{{Uuid, u"notes.rtf"_s}, "a"},
         {{Uuid, u"content.rtf"_s}, "b"},
         {key(u"2.rtf"_s), "c"},
         {key(u"12.rtf"_s), "d"},
         {key(u"12_notes.rtf"_s), "e"}},
        "12.rtf=64\n12_notes.rtf=65\n2.rtf=63\n" + UuidText + "/content.rtf=62\n" + UuidText
            + "/notes.rtf=61\n");
}

void TstChecksumFiles::everyRecordIsALine()
{
    QFETCH(const ChecksumMap, checksums);
    QFETCH(const QByteArray, content);

    const TestProject project;
    project.writeFile(FileName, "old");
    QVERIFY(Checksums::saveChecksumFile(project.path(FileName), checksums));
    QCOMPARE(project.readFile(FileName), content);
}

void TstChecksumFiles::savingReplacesTheWholeFile()
{
    const TestProject project;
    const QString path = project.path(FileName);
    project.writeFile(FileName, QByteArray(10'000, 'x'));
    QVERIFY(Checksums::saveChecksumFile(path, {{key(u"1.rtf"_s), "a"}}));
    QCOMPARE(project.readFile(FileName), "1.rtf=61\n");
    QVERIFY(Checksums::saveChecksumFile(path, {}));
    QCOMPARE(project.readFile(FileName), QByteArray());
    QCOMPARE(project.files().size(), 1);
}

void TstChecksumFiles::whatCannotBeWrittenIsAFailure()
{
    const TestProject project;
    const ChecksumMap checksums = {{key(u"1.rtf"_s), "a"}};
    QVERIFY(!Checksums::saveChecksumFile(QString(), checksums));
    QVERIFY(!Checksums::saveChecksumFile(project.path(u"missing/file"_s), checksums));
    QVERIFY(!QDir(project.path()).exists());
    project.writeFile(u"folder/file"_s, "x");
    QVERIFY(!Checksums::saveChecksumFile(project.path(u"folder"_s), checksums));
    QCOMPARE(project.readFile(u"folder/file"_s), "x");
    makeUnwritable(project, FileName);
    QVERIFY(!Checksums::saveChecksumFile(project.path(FileName), checksums));
    const UnopenableFile file;
    file.linkTo(project, FileName);
    QVERIFY(!Checksums::saveChecksumFile(project.path(FileName), checksums));
}

void TstChecksumFiles::everyLineIsARecord_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<ChecksumMap>("checksums");

    const auto add = [](const char *name, const QByteArray &content, const ChecksumMap &checksums) {
        QTest::newRow(name) << content << checksums;
    };
    const ChecksumMap numbered = {{key(u"12.rtf"_s), EmptyHash}};
    const ChecksumMap ofItem = {{{Uuid, u"content.rtf"_s}, EmptyHash}};
    add("empty file", "", {});
    add("numbered file", "12.rtf=" + EmptyHex + '\n', numbered);
    add("file in an item's folder", UuidText + "/content.rtf=" + EmptyHex + '\n', ofItem);
    add("uuid in lower case", UuidText.toLower() + "/content.rtf=" + EmptyHex + '\n', ofItem);
    add("hash in upper case", "12.rtf=" + EmptyHex.toUpper() + '\n', numbered);
    add("no line end", "12.rtf=" + EmptyHex, numbered);
    add("CR LF", "12.rtf=" + EmptyHex + "\r\n", numbered);
    add("several CR LF", "12.rtf=" + EmptyHex + "\r\n\r\nabc\r\n1.rtf=61\r\n",
        {{key(u"12.rtf"_s), EmptyHash}, {key(u"1.rtf"_s), "a"}});
    add("byte order mark",
        "\xef\xbb\xbf"
        "12.rtf="
            + EmptyHex + '\n',
        numbered);
    add("later lines win", "12.rtf=61\n1.rtf=62\n12.rtf=" + EmptyHex + "\n1.rtf=\n",
        {{key(u"12.rtf"_s), EmptyHash}, {key(u"1.rtf"_s), {}}});
    add("later lines win in either case", UuidText + "/a=61\n" + UuidText.toLower() + "/a=62\n",
        {{{Uuid, u"a"_s}, "b"}});

    add("no equal sign", "abc\n", {});
    add("nothing before the equal sign", "=abc\n", {});
    add("only line ends", "\n\n\r\n\n", {});
    add("only an equal sign", "=", {});
    add("skipped lines among others", "abc\n=abc\n1.rtf=61\nabc\n=\n2.rtf=62\n",
        {{key(u"1.rtf"_s), "a"}, {key(u"2.rtf"_s), "b"}});
    add("split at the first equal sign", "1.rtf=61=62\n", {{key(u"1.rtf"_s), "ab"}});
    add("nothing behind the equal sign", "1.rtf=\n", {{key(u"1.rtf"_s), {}}});

    add("split at the first slash", UuidText + "/a/b=61\n", {{{Uuid, u"a/b"_s}, "a"}});
    add("nothing behind the slash", UuidText + "/=61\n", {{{Uuid, QString()}, "a"}});
    add("slash in front", "/1.rtf=61\n", {{key(u"/1.rtf"_s), "a"}});
    add("slash behind the equal sign", "1.rtf=/61\n", {{key(u"1.rtf"_s), "a"}});
    add("no uuid before the slash", "abc/1.rtf=61\n", {{key(u"1.rtf"_s), "a"}});
    add("more than a uuid before the slash", UuidText + "0/a=61\n", {{key(u"a"_s), "a"}});
    add("less than a uuid before the slash", UuidText.chopped(1) + "/a=61\n", {{key(u"a"_s), "a"}});
    add("null uuid", "00000000-0000-0000-0000-000000000000/a=61\n", {{key(u"a"_s), "a"}});
    add("uuid without a slash", UuidText + "=61\n", {{key(QString::fromLatin1(UuidText)), "a"}});

    add("no digits", "1.rtf=xyz\n", {{key(u"1.rtf"_s), {}}});
    add("digits among others", "1.rtf= 6x1 \t\n", {{key(u"1.rtf"_s), "a"}});
    add("half a byte", "1.rtf=161\n",
        {{key(u"1.rtf"_s),
          "\x01"
          "a"}});
    add("a short hash", "1.rtf=" + EmptyHex.first(38) + '\n',
        {{key(u"1.rtf"_s), EmptyHash.first(19)}});
    add("a long hash", "1.rtf=" + EmptyHex + "61\n", {{key(u"1.rtf"_s), EmptyHash + 'a'}});
    add("Latin-1 among the digits",
        "1.rtf=6\xe9"
        "1\n",
        {{key(u"1.rtf"_s), "a"}});

    add("blanks belong to the name", " 1.rtf =61\n", {{key(u" 1.rtf "_s), "a"}});
    add("CR in the name", "1\r.rtf=61\n", {{key(u"1\r.rtf"_s), "a"}});
    add("Unicode", "\xc3\xa9.links=61\n", {{key(u"\u00e9.links"_s), "a"}});
    add("no Unicode", "\xff.links=61\n", {{key(u"\ufffd.links"_s), "a"}});
    add("NUL in the name", QByteArray("1\0.rtf=61\n2.rtf=62\n", 19),
        {{key(QString(u"1\0.rtf"_s)), "a"}, {key(u"2.rtf"_s), "b"}});
    add("NUL in the hash", QByteArray("1.rtf=6\0001\n2.rtf=62\n", 19),
        {{key(u"1.rtf"_s), "a"}, {key(u"2.rtf"_s), "b"}});
    add("nothing but NUL", QByteArray(4096, '\0'), {});
}

void TstChecksumFiles::everyLineIsARecord()
{
    QFETCH(const QByteArray, content);
    QFETCH(const ChecksumMap, checksums);

    const TestProject project;
    const ChecksumMap found = loaded(project, content);
    QCOMPARE(toText(found), toText(checksums));
    QCOMPARE(found, checksums);
    QCOMPARE(project.readFile(FileName), content);
}

void TstChecksumFiles::aHugeLineIsALineLikeAnyOther()
{
    constexpr int Length = 8'000'000;
    const TestProject project;
    const QByteArray good = "12.rtf=" + EmptyHex + '\n';
    const ChecksumMap numbered = {{key(u"12.rtf"_s), EmptyHash}};
    QCOMPARE(loaded(project, QByteArray(Length, 'a') + '\n' + good), numbered);
    QCOMPARE(loaded(project, '=' + QByteArray(Length, 'a') + '\n' + good), numbered);

    ChecksumMap expected = numbered;
    expected.insert(key(u"1.rtf"_s), QByteArray(Length / 2, '\xaa'));
    QCOMPARE(loaded(project, "1.rtf=" + QByteArray(Length, 'a') + '\n' + good), expected);

    expected = numbered;
    expected.insert(key(QString(Length, u'a')), "a");
    QCOMPARE(loaded(project, QByteArray(Length, 'a') + "=61\n" + good), expected);
    QCOMPARE(loaded(project, QByteArray(Length, '\n') + good), numbered);
}

void TstChecksumFiles::whatWasSavedIsLoaded()
{
    const TestProject project;
    project.writeFile(FileName, {});
    const ChecksumMap checksums = someRecords(10'000);
    QVERIFY(Checksums::saveChecksumFile(project.path(FileName), checksums));
    const QByteArray content = project.readFile(FileName);
    ChecksumMap again;
    QVERIFY(Checksums::loadChecksumFile(project.path(FileName), &again));
    QCOMPARE(again, checksums);
    QVERIFY(Checksums::saveChecksumFile(project.path(FileName), again));
    QCOMPARE(project.readFile(FileName), content);

    // Line ends and the order of lines are nothing that a record hangs on.
    QList<QByteArray> lines = content.split('\n');
    std::reverse(lines.begin(), lines.end());
    QCOMPARE(loaded(project, lines.join("\r\n")), checksums);
}

void TstChecksumFiles::damageIsLimitedToItsLines()
{
    const TestProject project;
    const ChecksumMap checksums = someRecords(6);
    QVERIFY(QDir().mkpath(project.path()));
    QVERIFY(Checksums::saveChecksumFile(project.path(FileName), checksums));
    const QByteArray content = project.readFile(FileName);
    for (qsizetype i = 0; i < content.size(); ++i) {
        for (const int bit : {0, 3, 7}) {
            QByteArray damaged = content;
            damaged[i] = char(damaged[i] ^ (1 << bit));
            ChecksumMap left = loaded(project, damaged);
            // A line, or two when the end of one is hit.
            int lost = 0;
            for (auto entry = checksums.cbegin(); entry != checksums.cend(); ++entry)
                lost += left.value(entry.key(), "lost") == entry.value() ? 0 : 1;
            QVERIFY2(lost <= 2, qPrintable(QString::number(i)));
        }
    }
}

void TstChecksumFiles::aFileThatIsCutOffLosesItsEnd()
{
    const TestProject project;
    const ChecksumMap checksums = someRecords(6);
    QVERIFY(QDir().mkpath(project.path()));
    QVERIFY(Checksums::saveChecksumFile(project.path(FileName), checksums));
    const QByteArray content = project.readFile(FileName);
    for (qsizetype size = 0; size < content.size(); ++size) {
        const QByteArray part = content.first(size);
        const ChecksumMap left = loaded(project, part);
        auto entry = checksums.cbegin();
        for (qsizetype lines = part.count('\n'); lines > 0; --lines, ++entry)
            QVERIFY(left.contains(entry.key()) && left.value(entry.key()) == entry.value());
    }
}

void TstChecksumFiles::loadingReplacesWhatTheMapHeld()
{
    const TestProject project;
    project.writeFile(FileName, "1.rtf=61\n");
    ChecksumMap checksums = {{key(u"2.rtf"_s), "b"}, {key(u"1.rtf"_s), "b"}};
    QVERIFY(Checksums::loadChecksumFile(project.path(FileName), &checksums));
    QCOMPARE(checksums, (ChecksumMap{{key(u"1.rtf"_s), "a"}}));
}

void TstChecksumFiles::anUnreadableFileIsAnEmptyMap()
{
    const TestProject project;
    const UnopenableFile file;
    file.linkTo(project, u"unopenable"_s);
    linkToUnreadableFile(project, u"unreadable"_s);
    project.writeFile(u"folder/file"_s, "1.rtf=61\n");
    for (const QString &path :
         {QString(), project.path(u"missing"_s), project.path(u"unopenable"_s),
          project.path(u"unreadable"_s), project.path(u"folder"_s)}) {
        ChecksumMap checksums = {{key(u"1.rtf"_s), "a"}};
        QVERIFY2(!Checksums::loadChecksumFile(path, &checksums), qPrintable(path));
        QVERIFY(checksums.isEmpty());
    }
    QVERIFY(!QFile::exists(project.path(u"missing"_s)));
}

void TstChecksumFiles::thereHasToBeAMap()
{
    const TestProject project;
    project.writeFile(FileName, "1.rtf=61\n");
    QVERIFY(!Checksums::loadChecksumFile(project.path(FileName), nullptr));
}

void TstChecksumFiles::textKeysAreSplitAtTheirUuid_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<ChecksumKey>("expected");

    const auto add = [](const char *name, const QString &text, const ChecksumKey &expected) {
        QTest::newRow(name) << text << expected;
    };
    const QString uuid = QString::fromLatin1(UuidText);
    add("uuid and name", uuid + u"/content.rtf"_s, {Uuid, u"content.rtf"_s});
    add("lower case", uuid.toLower() + u"/content.rtf"_s, {Uuid, u"content.rtf"_s});
    add("braces", u'{' + uuid + u"}/content.rtf"_s, {Uuid, u"content.rtf"_s});
    add("half the braces", u'{' + uuid + u"/content.rtf"_s, key(u'{' + uuid + u"/content.rtf"_s));
    add("two pairs of braces", u"{{"_s + uuid + u"}}/a"_s, key(u"{{"_s + uuid + u"}}/a"_s));
    add("braces around less", u'{' + uuid.chopped(1) + u"}/a"_s,
        key(u'{' + uuid.chopped(1) + u"}/a"_s));
    add("several slashes", uuid + u"/a/b"_s, {Uuid, u"a/b"_s});
    add("no slash", u"12.rtf"_s, key(u"12.rtf"_s));
    add("only a uuid", uuid, key(uuid));
    add("no uuid", u"abc/12.rtf"_s, key(u"abc/12.rtf"_s));
    add("more than a uuid", uuid + u"x/12.rtf"_s, key(uuid + u"x/12.rtf"_s));
    add("null uuid", QUuid().toString(QUuid::WithoutBraces) + u"/a"_s,
        key(QUuid().toString(QUuid::WithoutBraces) + u"/a"_s));
    add("slash in front", u"/12.rtf"_s, key(u"/12.rtf"_s));
    add("empty", QString(), key(QString()));
    add("equal sign", u"a=b"_s, key(u"a=b"_s));
}

void TstChecksumFiles::textKeysAreSplitAtTheirUuid()
{
    QFETCH(const QString, text);
    QFETCH(const ChecksumKey, expected);

    const QMap<QString, QByteArray> texts = {{text, EmptyHash}, {u"other"_s, "b"}};
    const ChecksumMap checksums = Checksums::toUuidChecksumMap(texts);
    QCOMPARE(checksums.size(), 2);
    QVERIFY(checksums.contains(expected));
    QCOMPARE(checksums.value(expected), EmptyHash);
    QCOMPARE(checksums.value(key(u"other"_s)), "b");
    QVERIFY(Checksums::toUuidChecksumMap({}).isEmpty());
}

void TstChecksumFiles::aMapContainsTheUuidsOfItsKeys()
{
    const ChecksumMap checksums = {{key(u"12.rtf"_s), "a"},
                                   {key(2, u"content.rtf"_s), "b"},
                                   {key(2, u"notes.rtf"_s), "c"},
                                   {key(4, QString()), "d"}};
    for (int number = 1; number <= 5; ++number)
        QCOMPARE(Checksums::checksumMapContains(checksums, uuidOf(number)), number % 2 == 0);
    QVERIFY(Checksums::checksumMapContains(checksums, QUuid()));
    QVERIFY(!Checksums::checksumMapContains({{key(2, u"a"_s), "b"}}, QUuid()));
    QVERIFY(!Checksums::checksumMapContains({}, uuidOf(1)));
    QVERIFY(!Checksums::checksumMapContains({}, QUuid()));
}

TVL_TEST(TstChecksumFiles)
#include "tst_checksumfiles.moc"
