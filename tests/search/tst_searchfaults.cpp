#include "LogTaker.h"
#include "SqlTrace.h"
#include "TVLCollectionMetaData.h"
#include "TVLSearchIndex.h"
#include "TestMain.h"
#include "TestSearchedProject.h"

#include <QCoreApplication>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlRecord>
#include <QSqlResult>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <memory>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

struct sqlite3;
Q_DECLARE_OPAQUE_POINTER(sqlite3 *)

namespace {

/** What stands in the place of another library's connection. */
QByteArray foreignMemory()
{
    return QByteArray(65536, '\x55');
}

/** Answers nothing. */
class ForeignResult : public QSqlResult
{
public:
    explicit ForeignResult(const QSqlDriver *driver)
        : QSqlResult(driver)
    {
    }

protected:
    QVariant data(int /*field*/) override { return {}; }
    bool isNull(int /*field*/) override { return true; }
    bool reset(const QString & /*query*/) override { return false; }
    bool fetch(int /*row*/) override { return false; }
    bool fetchFirst() override { return false; }
    bool fetchLast() override { return false; }
    int size() override { return 0; }
    int numRowsAffected() override { return 0; }
};

/** A driver with a SQLite of its own: its handle is nothing for the one that is linked here. */
class ForeignDriver : public QSqlDriver
{
public:
    static inline QByteArray sMemory;

    bool hasFeature(DriverFeature /*feature*/) const override { return false; }
    void close() override { setOpen(false); }
    QSqlResult *createResult() const override { return new ForeignResult(this); }
    QVariant handle() const override
    {
        return QVariant::fromValue(reinterpret_cast<sqlite3 *>(sMemory.data()));
    }
    bool open(const QString &, const QString &, const QString &, const QString &, int,
              const QString &) override
    {
        setOpen(true);
        return true;
    }
};

/** Lets no file of this process grow beyond a size, as a disk that is full does. */
class FileSizeLimit
{
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &mBefore);
        const rlimit limit = {bytes, mBefore.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &mBefore); }
    Q_DISABLE_COPY_MOVE(FileSizeLimit)

private:
    rlimit mBefore = {};
};

const QList<TVLLabel> Labels = {{3, u"Three"_s, QColor(1, 2, 3)}, {1, u"Uno"_s, QColor()}};
const QList<TVLStatusItem> Items = {{3, u"Three"_s}, {1, u"Uno"_s}};

} // namespace

class TstSearchFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aStoreWithoutDriverIsEmptyAndUsable();
    void theHandleOfAnotherSqliteIsNotTouched();
    void aStoreThatIsNotConnectedIsEmptyAndUsable();
    void aStoreNeedsNoRoomOnDisk();
    void aFileThatIsCutOffByTheDiskIsNotTakenForSaved();

private:
    static void checkThatAllFails(TVLSearchIndex *index);
};

/** Every operation, on a store that can do nothing. */
void TstSearchFaults::checkThatAllFails(TVLSearchIndex *index)
{
    TestSearchedProject project;
    TVLProjectNode *node = project.addNode(7, u"Title"_s);
    QVERIFY(!index->addProjectNode(node));
    QVERIFY(!index->addDocument(project.searchedIndex(7)));
    QVERIFY(!index->addDocumentData(7, u"Title"_s, 1, 1, {1}));
    QVERIFY(!index->removeDocument(7));
    for (int property = 0; property < 10; ++property) {
        const auto value = TVL::DocumentProperty(property);
        index->updatePropertyNode(node, value, u"text"_s, true);
        index->invalidatePropertyNode(node, value);
        index->validateProperty(7, value);
        QVERIFY(!index->hasText(7, value));
        QVERIFY(index->searchTextProperties({u"x"_s}, 0, value).isEmpty());
        QVERIFY(index->searchIntProperties({u"x"_s}, 0, value).isEmpty());
    }
    QVERIFY(!index->addLabel(1, u"One"_s, QColor()));
    QVERIFY(!index->setLabels(Labels));
    QVERIFY(index->labels().isEmpty());
    QVERIFY(!index->hasLabel(1));
    QVERIFY(!index->addStatusItem(1, u"One"_s));
    QVERIFY(!index->setStatusItems(Items));
    QVERIFY(index->statusItems().isEmpty());
    QVERIFY(!index->addKeyword(1, u"One"_s));
    QVERIFY(!index->updateKeyword(1, u"One"_s));
    QVERIFY(!index->removeKeyword(1));
    QVERIFY(!index->setDocumentKeywords(7, {1}));
    QVERIFY(index->affectedDocuments(1).isEmpty());
    QVERIFY(index->notConfirmedIndexes().isEmpty());
    QVERIFY(index->indexes(searchFor(u"x"_s)).isEmpty());
    QVERIFY(!index->createTables());
    QVERIFY(!index->dropTables());
}

/** Before anything has had the driver loaded. */
void TstSearchFaults::initTestCase()
{
    QVERIFY(QSqlDatabase::connectionNames().isEmpty());
}

void TstSearchFaults::aStoreWithoutDriverIsEmptyAndUsable()
{
    const QStringList paths = QCoreApplication::libraryPaths();
    QCoreApplication::setLibraryPaths({});
    if (QSqlDatabase::isDriverAvailable(u"QSQLITE"_s)) {
        QCoreApplication::setLibraryPaths(paths);
        QFAIL("The driver is there already");
    }
    TestSearchedProject project;
    project.addNode(7, u"Title"_s);
    {
        const LogTaker taker;
        TVLSearchIndex index(&project);
        QVERIFY(!index.isOpen());
        QCOMPARE(taker.lines().filter(u"could not open QSQLITE connection"_s).size(), 1);
        QCOMPARE(taker.lines().filter(u"could not create schema:"_s).size(), 0);
        checkThatAllFails(&index);
        QVERIFY(!index.isModified());

        // A file is no less safe for that.
        project.writeIndex("<SearchIndexes><Documents/></SearchIndexes>");
        QVERIFY(!index.load());
        index.save();
        QCOMPARE(project.readIndex(), QByteArray("<SearchIndexes><Documents/></SearchIndexes>"));
    }
    QCoreApplication::setLibraryPaths(paths);
    QVERIFY(TVLSearchIndex().isOpen());
}

void TstSearchFaults::theHandleOfAnotherSqliteIsNotTouched()
{
    ForeignDriver::sMemory = foreignMemory();
    QSqlDatabase::registerSqlDriver(u"QSQLITE"_s, new QSqlDriverCreator<ForeignDriver>);
    {
        const LogTaker taker;
        TVLSearchIndex index;
        QVERIFY(index.isOpen());
        QCOMPARE(taker.lines().filter(u"needs an open connection of SQLite"_s).size(), 1);
        QVERIFY(index.labels().isEmpty());
    }
    QCOMPARE(ForeignDriver::sMemory, foreignMemory());
    QSqlDatabase::registerSqlDriver(u"QSQLITE"_s, nullptr);
    QVERIFY(TVLSearchIndex().addLabel(1, u"One"_s, QColor()));
}

void TstSearchFaults::aStoreThatIsNotConnectedIsEmptyAndUsable()
{
    TVLSearchIndex index;
    const LogTaker taker;
    index.close();
    TestSearchedProject project;
    TVLProjectNode *node = project.addNode(7, u"Title"_s);
    index.updatePropertyNode(node, TVL::TextProperty, u"text"_s, true);
    QVERIFY(!index.hasText(node, TVL::TextProperty));
    QVERIFY(!index.setLabels(Labels));
    QVERIFY(index.labels().isEmpty());
    QVERIFY(index.indexes(searchFor(u"x"_s)).isEmpty());
    QVERIFY(!index.isModified());
}

void TstSearchFaults::aStoreNeedsNoRoomOnDisk()
{
    constexpr int Count = 2000;
    const QString prose = u"5 KB of prose, or so it seems. "_s.repeated(165);
    TestSearchedProject project;
    const LogTaker taker;
    const FileSizeLimit limit(20'000);
    TVLSearchIndex index(&project);
    QVERIFY(index.setLabels(Labels));
    QVERIFY(index.setStatusItems(Items));
    for (int id = 0; id < Count; ++id) {
        TVLProjectNode *node = project.addNode(id, u"Title"_s);
        QVERIFY(index.addProjectNode(node));
        index.updatePropertyNode(node, TVL::NotesProperty, prose, true);
        project.setText(id, TVL::TextProperty, prose + QString::number(id));
    }
    QCOMPARE(index.indexes(searchFor(u"seems. 1999"_s)), QList<int>{1999});
    // All of it once more inside the transaction that the first search opened.
    for (int id = 0; id < Count; ++id) {
        project.setText(id, TVL::TextProperty, prose + prose + QString::number(id));
        index.invalidateDocument(id, TVL::MainText);
    }
    QCOMPARE(index.indexes(searchFor(u"5 KB"_s)).size(), Count);
    QCOMPARE(taker.lines(), QStringList());
    QVERIFY(!index.setLabels({{7, u"a"_s, QColor()}, {7, u"b"_s, QColor()}}));
    QCOMPARE(taker.lines().size(), 1);
    QCOMPARE(index.labels(), Labels);
    QCOMPARE(index.statusItems(), Items);
    QCOMPARE(index.indexes(searchFor(u"seems. 1999"_s)), QList<int>{1999});
    QCOMPARE(rowsOf(index, u"PRAGMA integrity_check"_s), QStringList{u"ok"_s});
}

void TstSearchFaults::aFileThatIsCutOffByTheDiskIsNotTakenForSaved()
{
    TestSearchedProject project;
    TVLSearchIndex index(&project);
    TVLProjectNode *node = project.addNode(7, u"Title"_s);
    QVERIFY(index.addProjectNode(node));
    index.updatePropertyNode(node, TVL::TextProperty, QString(100'000, u'x'), true);
    {
        const FileSizeLimit limit(20'000);
        QTest::ignoreMessage(QtCriticalMsg, "could not write to search indexes file");
        index.save();
    }
    QVERIFY(index.isModified());
    index.save();
    QVERIFY(!index.isModified());
    QVERIFY(index.load());
    QVERIFY(index.hasText(7, TVL::TextProperty));
}

TVL_TEST(TstSearchFaults)
#include "tst_searchfaults.moc"
