#include "SqlTrace.h"
#include "TVLSearchIndex.h"
#include "TestMain.h"
#include "TestSearchedProject.h"

#include <QRegularExpression>
#include <QTest>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

const QString InsertText =
    u"INSERT INTO DocumentSearchProperties (identity, type, propertyValue, confirmed) VALUES (:i, :t, :v, :c)"_s;
const QString InsertInt =
    u"INSERT INTO DocumentIntProperties (identity, type, propertyValue) VALUES (:i, :t, :v)"_s;
const QString UpdateText =
    u"UPDATE DocumentSearchProperties SET propertyValue = :v, confirmed = :c WHERE identity = :id AND type = :t"_s;
const QString UpdateInt =
    u"UPDATE DocumentIntProperties SET propertyValue = :v WHERE identity = :id AND type = :t"_s;
const QString UpdateConfirmed =
    u"UPDATE DocumentSearchProperties SET confirmed = :c WHERE identity = :id AND type = :t"_s;
const QString DeleteInts = u"DELETE FROM DocumentIntProperties WHERE identity = :i"_s;
const QString SelectNonEmpty =
    u"SELECT * FROM DocumentSearchProperties WHERE type = :t AND identity = :i AND length(propertyValue) != 0"_s;

/** Item, property, text and whether it is confirmed, of each text. */
QStringList textRows(const TVLSearchIndex &index)
{
    return rowsOf(index,
                  u"SELECT identity, type, propertyValue, confirmed FROM DocumentSearchProperties "
                  "ORDER BY identity, type"_s);
}

/** Item, property and value of each number. */
QStringList intRows(const TVLSearchIndex &index)
{
    return rowsOf(index,
                  u"SELECT identity, type, propertyValue FROM DocumentIntProperties "
                  "ORDER BY identity, type, rowid"_s);
}

/** The statements other than those that make the indexes by which numbers are found. */
QStringList withoutIndexes(const QStringList &statements)
{
    return statements.filter(QRegularExpression(u"^(?!CREATE INDEX dip)"_s));
}

QStringList freshRows(int id, const QString &title)
{
    QStringList rows = {u"%1|1|%2|1"_s.arg(id).arg(title)};
    for (const int property : {2, 3, 4, 8, 9})
        rows.append(u"%1|%2||0"_s.arg(id).arg(property));
    return rows;
}

} // namespace

class TstSearchDocuments : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { mIndex = std::make_unique<TVLSearchIndex>(); }
    void cleanup() { mIndex.reset(); }

    void sixPropertiesAreTexts();
    void documentFilesHaveProperties();
    void aNewItemIsFoundByItsTitleOnly();
    void anItemIsAddedWithTheseStatements();
    void rootFoldersAreNotAdded_data();
    void rootFoldersAreNotAdded();
    void otherKindsOfItemsAreAdded_data();
    void otherKindsOfItemsAreAdded();
    void nothingIsAddedForNull();
    void aNegativeIdIsNotAdded();
    void anItemIsAddedByItsIndex();
    void anItemAddedTwiceHasItsNumbersTwice();
    void aFailedRowIsLoggedAndTheRestGoesOn();
    void addingInsideATransactionIsTakenBackWithIt();

    void textsAreUpdated_data();
    void textsAreUpdated();
    void labelAndStatusAreUpdated();
    void otherPropertiesAreNotUpdated_data();
    void otherPropertiesAreNotUpdated();
    void anUnknownIdIsNotUpdated();
    void anUpdateOfNoNodeDoesNothing();
    void textsAreStoredAsTheyAre_data();
    void textsAreStoredAsTheyAre();
    void aConfirmedTextHasItsFileRecorded_data();
    void aConfirmedTextHasItsFileRecorded();
    void anUnconfirmedTextHasNoFileRecorded();

    void textsAreInvalidatedAndValidated_data() { textsAreUpdated_data(); }
    void textsAreInvalidatedAndValidated();
    void numbersAreNeverConfirmed();
    void invalidatingALabelOrStatusIsOnlyLogged();
    void documentFilesAreInvalidated_data();
    void documentFilesAreInvalidated();
    void invalidatingNoNodeDoesNothing();

    void aRemovedItemKeepsItsTexts();
    void textsOfRemovedItemsStayWithTheirId();
    void itemsHaveTextOrNot();
    void noNodeHasText();
    void changesMarkTheStoreAsModified();
    void tablesAreMadeOnce();
    void tablesAreNotDropped();
    void readingTheIndexesDoesNothing();
    void manyItems();

private:
    void addItem(int id = 7) { QVERIFY(mIndex->addDocumentData(id, u"Title"_s, 3, 4, {})); }

    std::unique_ptr<TVLSearchIndex> mIndex;
};

void TstSearchDocuments::sixPropertiesAreTexts()
{
    QCOMPARE(TVLSearchIndex::stringDocumentProperties(), (QSet<int>{1, 2, 3, 4, 8, 9}));
    QCOMPARE(&TVLSearchIndex::stringDocumentProperties(),
             &TVLSearchIndex::stringDocumentProperties());
}

void TstSearchDocuments::documentFilesHaveProperties()
{
    const QMap<int, int> properties = {{0, 2}, {1, 3}, {2, 4}, {4, 9}};
    for (int type = -1; type <= 10; ++type)
        QCOMPARE(int(TVL::toDocumentProperty(TVL::DocumentType(type))), properties.value(type, 0));
    for (int property = -1; property <= 10; ++property) {
        const auto value = TVL::DocumentProperty(property);
        QCOMPARE(TVL::canConvertToDocType(value), properties.values().contains(property));
        QCOMPARE(int(TVL::toDocumentType(value)), properties.key(property, 0));
    }
}

void TstSearchDocuments::aNewItemIsFoundByItsTitleOnly()
{
    TestSearchedProject project;
    TVLProjectNode *node = project.addNode(7, u"Chapter"_s);
    node->mLabelId = 3;
    node->mStatusId = -1;
    node->mKeywords = {12, 11};
    QVERIFY(mIndex->addProjectNode(node));
    QCOMPARE(textRows(*mIndex), freshRows(7, u"Chapter"_s));
    QCOMPARE(intRows(*mIndex), QStringList({u"7|5|12"_s, u"7|5|11"_s, u"7|6|3"_s, u"7|7|-1"_s}));
    QVERIFY(mIndex->isModified());
    // Empty, and not absent.
    QCOMPARE(rowsOf(*mIndex,
                    u"SELECT count(*) FROM DocumentSearchProperties WHERE propertyValue IS NULL"_s),
             QStringList{u"0"_s});
}

void TstSearchDocuments::anItemIsAddedWithTheseStatements()
{
    SqlTrace trace(*mIndex);
    QVERIFY(mIndex->addDocumentData(7, QString(), 3, 4, {12, 11}));
    QCOMPARE(trace.take(),
             QStringList(6, InsertText) + QStringList(2, InsertInt) + QStringList(2, InsertInt));
    // Texts come in the order of the set.
    QStringList order;
    for (const int property : TVLSearchIndex::stringDocumentProperties())
        order.append(QString::number(property));
    QCOMPARE(rowsOf(*mIndex, u"SELECT type FROM DocumentSearchProperties ORDER BY rowid"_s), order);
    QCOMPARE(
        rowsOf(*mIndex, u"SELECT type, propertyValue FROM DocumentIntProperties ORDER BY rowid"_s),
        QStringList({u"6|3"_s, u"7|4"_s, u"5|12"_s, u"5|11"_s}));
}

void TstSearchDocuments::rootFoldersAreNotAdded_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("draft") << int(TVL::DraftFolder);
    QTest::newRow("research") << int(TVL::ResearchFolder);
    QTest::newRow("trash") << int(TVL::TrashFolder);
}

void TstSearchDocuments::rootFoldersAreNotAdded()
{
    QFETCH(int, type);
    TestSearchedProject project;
    TVLProjectNode *node = project.addNode(0, u"Root"_s, TVL::NodeType(type));
    QVERIFY(!mIndex->addProjectNode(node));
    QVERIFY(!mIndex->addDocument(project.searchedIndex(0)));
    QVERIFY(textRows(*mIndex).isEmpty());
    QVERIFY(intRows(*mIndex).isEmpty());
    QVERIFY(!mIndex->isModified());
}

void TstSearchDocuments::otherKindsOfItemsAreAdded_data()
{
    QTest::addColumn<int>("type");
    for (int type = TVL::Folder; type <= TVL::Other; ++type)
        QTest::addRow("%d", type) << type;
}

void TstSearchDocuments::otherKindsOfItemsAreAdded()
{
    QFETCH(int, type);
    TestSearchedProject project;
    QVERIFY(mIndex->addProjectNode(project.addNode(0, u"Item"_s, TVL::NodeType(type))));
    QCOMPARE(textRows(*mIndex), freshRows(0, u"Item"_s));
}

void TstSearchDocuments::nothingIsAddedForNull()
{
    QVERIFY(!mIndex->addProjectNode(nullptr));
    QVERIFY(!mIndex->addDocument({}));
    QVERIFY(!mIndex->isModified());
}

void TstSearchDocuments::aNegativeIdIsNotAdded()
{
    TestSearchedProject project;
    QVERIFY(!mIndex->addProjectNode(project.addNode(-1, u"Item"_s)));
    QVERIFY(!mIndex->addDocumentData(-5, u"Item"_s, 1, 1, {1}));
    QVERIFY(textRows(*mIndex).isEmpty());
    QVERIFY(intRows(*mIndex).isEmpty());
    QVERIFY(!mIndex->isModified());
}

void TstSearchDocuments::anItemIsAddedByItsIndex()
{
    TestSearchedProject project;
    project.addNode(2, u"One"_s);
    project.addNode(1, u"Two"_s);
    QVERIFY(mIndex->addDocument(project.searchedIndex(1)));
    QCOMPARE(textRows(*mIndex), freshRows(1, u"Two"_s));
}

void TstSearchDocuments::anItemAddedTwiceHasItsNumbersTwice()
{
    QVERIFY(mIndex->addDocumentData(7, u"One"_s, 3, 4, {5}));
    expectSqlErrors(u"UNIQUE constraint failed: DocumentSearchProperties.identity, "
                    "DocumentSearchProperties.type"_s,
                    6);
    QVERIFY(mIndex->addDocumentData(7, u"Two"_s, 30, 40, {50}));
    QCOMPARE(textRows(*mIndex), freshRows(7, u"One"_s));
    QCOMPARE(
        intRows(*mIndex),
        QStringList({u"7|5|5"_s, u"7|5|50"_s, u"7|6|3"_s, u"7|6|30"_s, u"7|7|4"_s, u"7|7|40"_s}));
}

void TstSearchDocuments::aFailedRowIsLoggedAndTheRestGoesOn()
{
    execute(*mIndex,
            u"CREATE TRIGGER refuse BEFORE INSERT ON DocumentSearchProperties "
            "WHEN NEW.type = 4 BEGIN SELECT RAISE(ABORT, 'refused'); END"_s);
    expectSqlErrors(u"INSERT INTO DocumentSearchProperties.*refused"_s);
    QVERIFY(mIndex->addDocumentData(7, u"One"_s, 3, 4, {5}));
    QStringList rows = freshRows(7, u"One"_s);
    rows.removeOne(u"7|4||0"_s);
    QCOMPARE(textRows(*mIndex), rows);
    QCOMPARE(intRows(*mIndex).size(), 3);
}

void TstSearchDocuments::addingInsideATransactionIsTakenBackWithIt()
{
    QVERIFY(mIndex->transaction());
    addItem();
    QVERIFY(mIndex->rollback());
    QVERIFY(textRows(*mIndex).isEmpty());
    addItem();
    QCOMPARE(textRows(*mIndex), freshRows(7, u"Title"_s));
}

void TstSearchDocuments::textsAreUpdated_data()
{
    QTest::addColumn<int>("property");
    QTest::newRow("title") << int(TVL::TitleProperty);
    QTest::newRow("text") << int(TVL::TextProperty);
    QTest::newRow("notes") << int(TVL::NotesProperty);
    QTest::newRow("synopsis") << int(TVL::SynopsisProperty);
    QTest::newRow("meta-data") << int(TVL::CustomMetaDataProperty);
    QTest::newRow("comments") << int(TVL::CommentsProperty);
}

void TstSearchDocuments::textsAreUpdated()
{
    QFETCH(int, property);
    TestSearchedProject project;
    const TVLProjectNode *node = project.addNode(7, u"Title"_s);
    addItem(7);
    addItem(8);
    SqlTrace trace(*mIndex);
    mIndex->updatePropertyNode(node, TVL::DocumentProperty(property), u"new"_s, true);
    QCOMPARE(trace.take(), QStringList{UpdateText});
    QVERIFY(textRows(*mIndex).contains(u"7|%1|new|1"_s.arg(property)));
    mIndex->updatePropertyNode(node, TVL::DocumentProperty(property), u"newer"_s, false);
    QVERIFY(textRows(*mIndex).contains(u"7|%1|newer|0"_s.arg(property)));
    // A null value is an empty text.
    mIndex->updatePropertyNode(node, TVL::DocumentProperty(property), QString(), true);
    QVERIFY(textRows(*mIndex).contains(u"7|%1||1"_s.arg(property)));
    QCOMPARE(textRows(*mIndex).mid(6), freshRows(8, u"Title"_s));
    QCOMPARE(intRows(*mIndex).size(), 4);
}

void TstSearchDocuments::labelAndStatusAreUpdated()
{
    TestSearchedProject project;
    const TVLProjectNode *node = project.addNode(7, u"Title"_s);
    addItem(7);
    addItem(8);
    SqlTrace trace(*mIndex);
    mIndex->updatePropertyNode(node, TVL::LabelProperty, 30, true);
    mIndex->updatePropertyNode(node, TVL::StatusProperty, -1, false);
    QCOMPARE(withoutIndexes(trace.take()), QStringList({UpdateInt, UpdateInt}));
    QCOMPARE(intRows(*mIndex), QStringList({u"7|6|30"_s, u"7|7|-1"_s, u"8|6|3"_s, u"8|7|4"_s}));
}

void TstSearchDocuments::otherPropertiesAreNotUpdated_data()
{
    QTest::addColumn<int>("property");
    for (const int property : {-1, 0, 5, 10, 77})
        QTest::addRow("%d", property) << property;
}

void TstSearchDocuments::otherPropertiesAreNotUpdated()
{
    QFETCH(int, property);
    TestSearchedProject project;
    TVLSearchIndex index(&project);
    const TVLProjectNode *node = project.addNode(7, u"Title"_s);
    SqlTrace trace(index);
    index.updatePropertyNode(node, TVL::DocumentProperty(property), u"new"_s, true);
    index.validateProperty(7, TVL::DocumentProperty(property));
    index.invalidateProperty(7, TVL::DocumentProperty(property));
    QCOMPARE(trace.take(), QStringList());
    QVERIFY(!index.isModified());
    QVERIFY(!project.checksums()->isModified());
}

void TstSearchDocuments::anUnknownIdIsNotUpdated()
{
    TestSearchedProject project;
    addItem(8);
    const TVLProjectNode *node = project.addNode(7, u"Title"_s);
    const QStringList before = textRows(*mIndex) + intRows(*mIndex);
    QTest::failOnWarning(QRegularExpression(u".*"_s));
    for (int property = 0; property < 10; ++property)
        mIndex->updatePropertyNode(node, TVL::DocumentProperty(property), 1, true);
    mIndex->validateProperty(7, TVL::TextProperty);
    mIndex->invalidateProperty(7, TVL::TextProperty);
    QCOMPARE(textRows(*mIndex) + intRows(*mIndex), before);
}

void TstSearchDocuments::anUpdateOfNoNodeDoesNothing()
{
    mIndex->updatePropertyNode(nullptr, TVL::TextProperty, u"new"_s, true);
    QVERIFY(!mIndex->isModified());
}

void TstSearchDocuments::textsAreStoredAsTheyAre_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("stored");
    const auto addRow = [](const char *name, const QString &text) {
        QTest::newRow(name) << text << text;
    };
    addRow("empty", u""_s);
    addRow("quotes", u"it's \"so\" `so` \u2019"_s);
    addRow("a statement", u"x'); DROP TABLE DocumentSearchProperties; --"_s);
    addRow("placeholders", u":v ? @v $v ?1"_s);
    addRow("line ends", u"a\nb\r\nc\u2028d\u2029"_s);
    addRow("a NUL inside", u"before"_s + QChar(0) + u"behind"_s);
    addRow("a NUL first", QChar(0) + u"behind"_s);
    addRow("pairs", u"\U0001d11e\U0001f600"_s);
    addRow("a byte order mark", u"\ufefftext"_s);
    addRow("two byte order marks", u"\ufeff\ufefftext"_s);
    addRow("no character", QString(QChar(0xfdd0)));
    addRow("long", QString(3'000'000, u'\u00e4'));
    // Given out again as what stands for any of them.
    QTest::newRow("a swapped byte order mark") << QChar(0xfffe) + u"text"_s << u"\ufffdtext"_s;
    QTest::newRow("the last character") << u"a"_s + QChar(0xffff) << u"a\ufffd"_s;
    QTest::newRow("half a pair") << u"a"_s + QChar(0xd834) + u"b"_s << u"a\ufffdb"_s;
    QTest::newRow("half a pair last") << u"a"_s + QChar(0xd834) << u"a\ufffd"_s;
    QTest::newRow("the other half") << QChar(0xdd1e) + u"b"_s << u"\ufffdb"_s;
    QTest::newRow("a pair the wrong way round")
        << QString(QChar(0xdd1e)) + QChar(0xd834) + u"b"_s << u"\ufffd\ufffdb"_s;
}

void TstSearchDocuments::textsAreStoredAsTheyAre()
{
    QFETCH(QString, text);
    QFETCH(QString, stored);
    TestSearchedProject project;
    const TVLProjectNode *node = project.addNode(7, u"Title"_s);
    QVERIFY(mIndex->addDocumentData(7, text, 1, 1, {}));
    mIndex->updatePropertyNode(node, TVL::TextProperty, text, true);
    QCOMPARE(rowsOf(*mIndex,
                    u"SELECT propertyValue FROM DocumentSearchProperties WHERE type IN (1, 2)"_s),
             QStringList({stored, stored}));
}

void TstSearchDocuments::aConfirmedTextHasItsFileRecorded_data()
{
    QTest::addColumn<int>("property");
    QTest::addColumn<int>("type");
    QTest::newRow("text") << int(TVL::TextProperty) << int(TVL::MainText);
    QTest::newRow("notes") << int(TVL::NotesProperty) << int(TVL::NotesText);
    QTest::newRow("synopsis") << int(TVL::SynopsisProperty) << int(TVL::SynopsisText);
    QTest::newRow("comments") << int(TVL::CommentsProperty) << int(TVL::CommentsFile);
    QTest::newRow("title") << int(TVL::TitleProperty) << -1;
    QTest::newRow("meta-data") << int(TVL::CustomMetaDataProperty) << -1;
    QTest::newRow("label") << int(TVL::LabelProperty) << -1;
}

void TstSearchDocuments::aConfirmedTextHasItsFileRecorded()
{
    QFETCH(int, property);
    QFETCH(int, type);
    TestSearchedProject project;
    TVLSearchIndex index(&project);
    const TVLProjectNode *node = project.addNode(7, u"Title"_s);
    for (const int file : {0, 1, 2, 4})
        project.writeDocument(7, TVL::DocumentType(file), "content");
    index.updatePropertyNode(node, TVL::DocumentProperty(property), 1, true);
    QCOMPARE(project.checksums()->isModified(), type >= 0);
    for (const int file : {0, 1, 2, 4})
        QCOMPARE(!project.checksums()->loadedChecksum(7, TVL::DocumentType(file)).isEmpty(),
                 file == type);
}

void TstSearchDocuments::anUnconfirmedTextHasNoFileRecorded()
{
    TestSearchedProject project;
    TVLSearchIndex index(&project);
    project.writeDocument(7, TVL::MainText, "content");
    index.updatePropertyNode(project.addNode(7, u"Title"_s), TVL::TextProperty, u"x"_s, false);
    QVERIFY(!project.checksums()->isModified());
}

void TstSearchDocuments::textsAreInvalidatedAndValidated()
{
    QFETCH(int, property);
    const auto value = TVL::DocumentProperty(property);
    TestSearchedProject project;
    const TVLProjectNode *node = project.addNode(7, u"Title"_s);
    addItem();
    mIndex->updatePropertyNode(node, value, u"text"_s, true);
    SqlTrace trace(*mIndex);
    mIndex->invalidateProperty(7, value);
    QVERIFY(textRows(*mIndex).contains(u"7|%1|text|0"_s.arg(property)));
    mIndex->validateProperty(7, value);
    QVERIFY(textRows(*mIndex).contains(u"7|%1|text|1"_s.arg(property)));
    mIndex->invalidatePropertyNode(node, value);
    QVERIFY(textRows(*mIndex).contains(u"7|%1|text|0"_s.arg(property)));
    QCOMPARE(trace.take().count(UpdateConfirmed), 3);
}

void TstSearchDocuments::numbersAreNeverConfirmed()
{
    SqlTrace trace(*mIndex);
    for (const int property : {5, 6, 7})
        mIndex->validateProperty(7, TVL::DocumentProperty(property));
    mIndex->invalidateProperty(7, TVL::KeywordsProperty);
    QCOMPARE(trace.take(), QStringList());
    QVERIFY(!mIndex->isModified());
}

void TstSearchDocuments::invalidatingALabelOrStatusIsOnlyLogged()
{
    addItem();
    const QStringList before = textRows(*mIndex) + intRows(*mIndex);
    SqlTrace trace(*mIndex);
    for (const int property : {6, 7}) {
        QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"^sql error \"\" \".*\" \\d+$"_s));
        mIndex->invalidateProperty(7, TVL::DocumentProperty(property));
    }
    QCOMPARE(trace.take(), QStringList());
    QCOMPARE(textRows(*mIndex) + intRows(*mIndex), before);
    addItem(8);
}

void TstSearchDocuments::documentFilesAreInvalidated_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("property");
    QTest::newRow("text") << int(TVL::MainText) << int(TVL::TextProperty);
    QTest::newRow("notes") << int(TVL::NotesText) << int(TVL::NotesProperty);
    QTest::newRow("synopsis") << int(TVL::SynopsisText) << int(TVL::SynopsisProperty);
    QTest::newRow("links") << int(TVL::LinksFile) << int(TVL::AllProperties);
    QTest::newRow("comments") << int(TVL::CommentsFile) << int(TVL::CommentsProperty);
    QTest::newRow("text styles") << int(TVL::TextStyles) << int(TVL::AllProperties);
    QTest::newRow("note styles") << int(TVL::NotesStyles) << int(TVL::AllProperties);
    QTest::newRow("another file") << int(TVL::ForeignFile) << int(TVL::AllProperties);
}

void TstSearchDocuments::documentFilesAreInvalidated()
{
    QFETCH(int, type);
    QFETCH(int, property);
    TestSearchedProject project;
    const TVLProjectNode *node = project.addNode(7, u"Title"_s);
    addItem();
    const QStringList expected =
        property == 0 ? QStringList() : QStringList{u"7|%1"_s.arg(property)};
    const QString unconfirmed =
        u"SELECT identity, type FROM DocumentSearchProperties WHERE confirmed = 0"_s;
    execute(*mIndex, u"UPDATE DocumentSearchProperties SET confirmed = 1"_s);
    mIndex->invalidateDocument(7, TVL::DocumentType(type));
    QCOMPARE(rowsOf(*mIndex, unconfirmed), expected);
    execute(*mIndex, u"UPDATE DocumentSearchProperties SET confirmed = 1"_s);
    mIndex->invalidateDocumentNode(node, TVL::DocumentType(type));
    QCOMPARE(rowsOf(*mIndex, unconfirmed), expected);
}

void TstSearchDocuments::invalidatingNoNodeDoesNothing()
{
    mIndex->invalidatePropertyNode(nullptr, TVL::TextProperty);
    mIndex->invalidatePropertyNode(nullptr, TVL::LabelProperty);
    mIndex->invalidateDocumentNode(nullptr, TVL::MainText);
    QVERIFY(!mIndex->isModified());
}

void TstSearchDocuments::aRemovedItemKeepsItsTexts()
{
    QVERIFY(mIndex->addDocumentData(7, u"Title"_s, 3, 4, {5, 6}));
    QVERIFY(mIndex->addDocumentData(8, u"Other"_s, 3, 4, {5}));
    SqlTrace trace(*mIndex);
    QVERIFY(mIndex->removeDocument(7));
    QCOMPARE(withoutIndexes(trace.take()), QStringList{DeleteInts});
    QCOMPARE(textRows(*mIndex), freshRows(7, u"Title"_s) + freshRows(8, u"Other"_s));
    QCOMPARE(intRows(*mIndex), QStringList({u"8|5|5"_s, u"8|6|3"_s, u"8|7|4"_s}));
    QVERIFY(mIndex->removeDocument(99));
}

void TstSearchDocuments::textsOfRemovedItemsStayWithTheirId()
{
    addItem();
    QVERIFY(mIndex->removeDocument(7));
    expectSqlErrors(u"UNIQUE"_s, 6);
    QVERIFY(mIndex->addDocumentData(7, u"Reused"_s, 1, 2, {}));
    QCOMPARE(textRows(*mIndex), freshRows(7, u"Title"_s));
    QCOMPARE(intRows(*mIndex), QStringList({u"7|6|1"_s, u"7|7|2"_s}));
    // Its new texts are taken as those of any item.
    TestSearchedProject project;
    mIndex->updatePropertyNode(project.addNode(7, u"x"_s), TVL::TitleProperty, u"Reused"_s, true);
    QCOMPARE(textRows(*mIndex), freshRows(7, u"Reused"_s));
}

void TstSearchDocuments::itemsHaveTextOrNot()
{
    TestSearchedProject project;
    const TVLProjectNode *node = project.addNode(7, u"Title"_s);
    addItem();
    SqlTrace trace(*mIndex);
    QVERIFY(mIndex->hasText(7, TVL::TitleProperty));
    QCOMPARE(trace.take(), QStringList{SelectNonEmpty});
    for (const int property : {0, 2, 3, 4, 5, 6, 7, 8, 9, 10})
        QVERIFY(!mIndex->hasText(node, TVL::DocumentProperty(property)));
    mIndex->updatePropertyNode(node, TVL::TextProperty, u" "_s, false);
    QVERIFY(mIndex->hasText(7, TVL::TextProperty));
    QVERIFY(mIndex->hasText(node, TVL::TextProperty));
    QVERIFY(!mIndex->hasText(8, TVL::TextProperty));
    QVERIFY(!mIndex->hasText(-1, TVL::TextProperty));
    mIndex->updatePropertyNode(node, TVL::TextProperty, QString(), true);
    QVERIFY(!mIndex->hasText(7, TVL::TextProperty));
}

void TstSearchDocuments::noNodeHasText()
{
    TestSearchedProject project;
    QVERIFY(mIndex->hasText(nullptr, TVL::TextProperty));
    QVERIFY(mIndex->hasText(project.addNode(-1, u"x"_s), TVL::TextProperty));
}

void TstSearchDocuments::changesMarkTheStoreAsModified()
{
    TestSearchedProject project;
    const TVLProjectNode *node = project.addNode(7, u"Title"_s);
    const QList<std::function<void(TVLSearchIndex *)>> changes = {
        [](TVLSearchIndex *index) { index->addDocumentData(7, {}, 1, 1, {}); },
        [](TVLSearchIndex *index) { index->removeDocument(7); },
        [=](TVLSearchIndex *index) {
            index->updatePropertyNode(node, TVL::TextProperty, {}, false);
        },
        [=](TVLSearchIndex *index) {
            index->updatePropertyNode(node, TVL::LabelProperty, 1, true);
        },
        [](TVLSearchIndex *index) { index->validateProperty(7, TVL::TextProperty); },
        [](TVLSearchIndex *index) { index->invalidateProperty(7, TVL::TextProperty); },
        [](TVLSearchIndex *index) { index->invalidateDocument(7, TVL::MainText); },
    };
    for (const auto &change : changes) {
        TVLSearchIndex index;
        change(&index);
        QVERIFY(index.isModified());
        QVERIFY(!index.isLoaded());
    }
}

void TstSearchDocuments::tablesAreMadeOnce()
{
    addItem();
    QTest::ignoreMessage(
        QtCriticalMsg,
        QRegularExpression(
            u"^could not create schema: \".*table DocumentSearchProperties already exists.*\"$"_s));
    QVERIFY(!mIndex->createTables());
    QCOMPARE(textRows(*mIndex), freshRows(7, u"Title"_s));
}

void TstSearchDocuments::tablesAreNotDropped()
{
    addItem();
    QTest::ignoreMessage(QtCriticalMsg,
                         QRegularExpression(u"^could not drop schema: \".*syntax error.*\"$"_s));
    QVERIFY(!mIndex->dropTables());
    QCOMPARE(textRows(*mIndex), freshRows(7, u"Title"_s));
}

void TstSearchDocuments::readingTheIndexesDoesNothing()
{
    SqlTrace trace(*mIndex);
    mIndex->readSearchIndexes();
    QCOMPARE(trace.take(), QStringList());
    QVERIFY(!mIndex->isLoaded());
}

void TstSearchDocuments::manyItems()
{
    constexpr int Count = 20000;
    TestSearchedProject project;
    TVLProjectNode *node = project.addNode(0, u"Item"_s);
    for (int id = 0; id < Count; ++id)
        QVERIFY(mIndex->addDocumentData(id, u"Item"_s, id % 7, id % 5, {id % 11}));
    // Each of these would look at all rows if it were left to the tables alone.
    for (int id = 0; id < Count; ++id) {
        node->mId = id;
        mIndex->updatePropertyNode(node, TVL::TextProperty, u"text"_s, true);
        mIndex->updatePropertyNode(node, TVL::LabelProperty, 1, true);
        QVERIFY(mIndex->hasText(id, TVL::TextProperty));
    }
    for (int id = 0; id < Count; ++id)
        QVERIFY(mIndex->removeDocument(id));
    QVERIFY(intRows(*mIndex).isEmpty());
}

TVL_TEST(TstSearchDocuments)
#include "tst_searchdocuments.moc"
