#include "SqlTrace.h"
#include "TVLSearchIndex.h"
#include "TestMain.h"
#include "TestSearchedProject.h"

#include <QTest>

#include <memory>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int ItemCount = 20;

QByteArray goodFile()
{
    QByteArray file =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<SearchIndexes Version=\"1.0\">\n"
        "    <Documents>\n";
    for (int id = 0; id < ItemCount; ++id)
        file += "        <Document ID=\"" + QByteArray::number(id)
            + "\">\n            <Text>It\xe2\x80\x99s text &amp; more</Text>\n        "
              "</Document>\n";
    return file + "    </Documents>\n</SearchIndexes>\n";
}

QStringList allRows(const TVLSearchIndex &index)
{
    return rowsOf(index,
                  u"SELECT identity, type, propertyValue, confirmed FROM DocumentSearchProperties "
                  "ORDER BY identity, type"_s);
}

qint64 peakMemory()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss * qint64(1024);
}

} // namespace

class TstSearchFileHostile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void damagedFilesAreRefusedWhole_data();
    void damagedFilesAreRefusedWhole();
    void filesCutOffAnywhereAreRefusedWhole();
    void flippedBitsNeverHarm();
    void aRefusedFileIsSearchedAnew();
    void aRefusedFileDoesNotConfirmWhatIsWrittenNext();
    void deepNestingIsSurvived();
    void aHugeElementIsSurvived();

private:
    std::unique_ptr<TestSearchedProject> mProject;
    std::unique_ptr<TVLSearchIndex> mIndex;
    QStringList mUntouched;
};

void TstSearchFileHostile::init()
{
    mProject = std::make_unique<TestSearchedProject>();
    mIndex = std::make_unique<TVLSearchIndex>(mProject.get());
    for (int id = 0; id < ItemCount; ++id)
        QVERIFY(mIndex->addProjectNode(mProject->addNode(id, u"Title"_s)));
    mUntouched = allRows(*mIndex);
}

void TstSearchFileHostile::cleanup()
{
    mIndex.reset();
    mProject.reset();
}

void TstSearchFileHostile::damagedFilesAreRefusedWhole_data()
{
    QTest::addColumn<QByteArray>("file");
    const QByteArray item = "<Document ID=\"7\"><Text>x</Text></Document>";
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("blanks") << QByteArray("  \n");
    QTest::newRow("no XML") << QByteArray("Dear diary");
    QTest::newRow("zeros") << QByteArray(5000, '\0');
    QTest::newRow("another root") << "<Indexes><Documents>" + item + "</Documents></Indexes>";
    QTest::newRow("root in another case")
        << "<searchindexes><Documents>" + item + "</Documents></searchindexes>";
    QTest::newRow("no documents") << QByteArray("<SearchIndexes Version=\"1.0\"/>");
    QTest::newRow("documents too deep")
        << "<SearchIndexes><a><Documents>" + item + "</Documents></a></SearchIndexes>";
    QTest::newRow("documents alone") << "<Documents>" + item + "</Documents>";
    QTest::newRow("something behind") << goodFile() + "<more/>";
    QTest::newRow("bad UTF-8") << goodFile().replace("\xe2\x80\x99", "\xe2\x80");
    QTest::newRow("a control character") << goodFile().replace("more", "mo\x01re");
    QTest::newRow("an unknown entity") << goodFile().replace("&amp;", "&what;");
    QTest::newRow("an encoding that isn't known") << goodFile().replace("UTF-8", "x-klingon");
    QTest::newRow("an entity of its own")
        << QByteArray("<!DOCTYPE SearchIndexes [<!ENTITY e \"text\">]><SearchIndexes><Documents>"
                      "<Document ID=\"7\"><Text>&e;</Text></Document></Documents></SearchIndexes>");
    QTest::newRow("a document type alone") << "<!DOCTYPE SearchIndexes>" + goodFile().mid(39);
    QTest::newRow("a file of others") << QByteArray(
        "<!DOCTYPE SearchIndexes [<!ENTITY e SYSTEM \"file:///etc/passwd\">]><SearchIndexes>"
        "<Documents><Document ID=\"7\"><Text>&e;</Text></Document></Documents></SearchIndexes>");
    QByteArray laughs = "<!DOCTYPE SearchIndexes [<!ENTITY l0 \"ha\">";
    for (int i = 1; i < 12; ++i) {
        const QByteArray inner = "&l" + QByteArray::number(i - 1) + ';';
        laughs += "<!ENTITY l" + QByteArray::number(i) + " \"" + inner.repeated(10) + "\">";
    }
    QTest::newRow("a billion laughs") << laughs
            + "]><SearchIndexes><Documents><Document ID=\"7\"><Text>&l11;</Text></Document>"
              "</Documents></SearchIndexes>";
}

void TstSearchFileHostile::damagedFilesAreRefusedWhole()
{
    QFETCH(QByteArray, file);
    mProject->writeIndex(file);
    QString error;
    QVERIFY(!mIndex->load(&error));
    QVERIFY(!error.isEmpty());
    QVERIFY(mIndex->isLoaded());
    QVERIFY(!mIndex->isModified());
    QCOMPARE(allRows(*mIndex), mUntouched);
    QCOMPARE(mProject->readIndex(), file);

    // The store works on.
    mProject->writeIndex(goodFile());
    QVERIFY2(mIndex->load(&error), qPrintable(error));
    QCOMPARE(error, QString());
    QVERIFY(mIndex->hasText(7, TVL::TextProperty));
}

void TstSearchFileHostile::filesCutOffAnywhereAreRefusedWhole()
{
    const QByteArray file = goodFile();
    const qsizetype end = file.lastIndexOf('>');
    for (qsizetype size = 0; size <= end; size += 1 + size % 7) {
        mProject->writeIndex(file.left(size));
        QString error;
        QVERIFY(!mIndex->load(&error));
        QVERIFY(!error.isEmpty());
        QCOMPARE(allRows(*mIndex), mUntouched);
    }
    mProject->writeIndex(file.left(end + 1));
    QVERIFY(mIndex->load());
}

void TstSearchFileHostile::flippedBitsNeverHarm()
{
    const QByteArray file = goodFile();
    for (qsizetype i = 0; i < file.size(); i += 10) {
        QByteArray flipped = file;
        flipped[i] = char(flipped[i] ^ (1 << (i / 10) % 8));
        mProject->writeIndex(flipped);
        QString error;
        const bool isLoaded = mIndex->load(&error);
        QCOMPARE(error.isEmpty(), isLoaded);
        QCOMPARE(allRows(*mIndex).size(), mUntouched.size());
        QVERIFY(!mIndex->isModified());
    }
}

void TstSearchFileHostile::aRefusedFileIsSearchedAnew()
{
    mProject->writeDocument(7, TVL::MainText, "on disk");
    mProject->setText(7, TVL::TextProperty, u"on disk"_s);
    mProject->recordHashes();
    mProject->writeIndex(goodFile().chopped(30));
    QVERIFY(!mIndex->load());
    // Neither by the file's text, nor by its hash as having none.
    mIndex->validateIndexes(nullptr);
    QVERIFY(mIndex->notConfirmedIndexes().isEmpty());
    QVERIFY(allRows(*mIndex).contains(u"7|2|on disk|1"_s));
}

void TstSearchFileHostile::aRefusedFileDoesNotConfirmWhatIsWrittenNext()
{
    mProject->writeDocument(7, TVL::MainText, "on disk");
    mProject->recordHashes();
    mProject->writeIndex(goodFile().chopped(30));
    QVERIFY(!mIndex->load());
    // Some other change is saved. There has been no search, so the text is still missing.
    mIndex->invalidateDocument(8, TVL::NotesText);
    mIndex->save();
    if (mProject->checksums()->isModified())
        QVERIFY(mProject->checksums()->saveChecksums());

    TVLSearchIndex next(mProject.get());
    QVERIFY(next.addProjectNode(mProject->nodes().at(7)));
    QVERIFY(next.load());
    QVERIFY(allRows(next).contains(u"7|2||0"_s));
}

void TstSearchFileHostile::deepNestingIsSurvived()
{
    constexpr int Depth = 200'000;
    mProject->writeIndex("<SearchIndexes><Documents><Document ID=\"7\"><Text>"
                         + QByteArray("<a>").repeated(Depth) + "deep"
                         + QByteArray("</a>").repeated(Depth)
                         + "</Text></Document></Documents></SearchIndexes>");
    QVERIFY(mIndex->load());
    QVERIFY(allRows(*mIndex).contains(u"7|2|deep|1"_s));
    mProject->writeIndex("<SearchIndexes><Documents>" + QByteArray("<a>").repeated(Depth));
    QVERIFY(!mIndex->load());
}

void TstSearchFileHostile::aHugeElementIsSurvived()
{
    constexpr int Size = 30'000'000;
    mProject->writeIndex("<SearchIndexes><Documents><Document ID=\"7\"><Unknown>"
                         + QByteArray(Size, 'x') + "</Unknown><Text>" + QByteArray(Size, 'y')
                         + "</Text></Document></Documents></SearchIndexes>");
    const qint64 before = peakMemory();
    QVERIFY(mIndex->load());
    QCOMPARE(rowsOf(*mIndex,
                    u"SELECT length(propertyValue) FROM DocumentSearchProperties "
                    "WHERE identity = 7 AND type = 2"_s),
             QStringList{QString::number(Size)});
    const qint64 grown = peakMemory() - before;
    QVERIFY2(grown < 20ll * Size, qPrintable(u"%1 bytes more"_s.arg(grown)));
}

TVL_TEST(TstSearchFileHostile)
#include "tst_searchfilehostile.moc"
