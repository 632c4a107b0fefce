#include "BinderSamples.h"
#include "LocalZone.h"
#include "RandomSections.h"
#include "RandomTree.h"
#include "TestBinderProject.h"
#include "TestProject.h"

#include "TestMain.h"
#include "TestScale.h"

#include <QRandomGenerator>
#include <QTest>
#include <QTimeZone>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace {

const int Nodes = testSize(5000);

/** A start, an end or a text of an XML document. */
struct Token
{
    QXmlStreamReader::TokenType type;
    QString text; ///< The element's name, or the text.
    QList<QPair<QString, QString>> attributes;
};

using Tokens = QList<Token>;

Tokens tokensOf(const QByteArray &xml)
{
    Tokens tokens;
    QXmlStreamReader reader(xml);
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType type = reader.readNext();
        if (type == QXmlStreamReader::Characters) {
            tokens.append({type, reader.text().toString(), {}});
        } else if (type == QXmlStreamReader::StartElement || type == QXmlStreamReader::EndElement) {
            Token token{type, reader.name().toString(), {}};
            for (const QXmlStreamAttribute &attribute : reader.attributes())
                token.attributes.append(
                    {attribute.name().toString(), attribute.value().toString()});
            tokens.append(token);
        }
    }
    return tokens;
}

QByteArray xmlOf(const Tokens &tokens)
{
    QByteArray xml;
    QXmlStreamWriter writer(&xml);
    writer.writeStartDocument();
    for (const Token &token : tokens) {
        if (token.type == QXmlStreamReader::StartElement) {
            writer.writeStartElement(token.text);
            for (const auto &[name, value] : token.attributes)
                writer.writeAttribute(name, value);
        } else if (token.type == QXmlStreamReader::EndElement) {
            writer.writeEndElement();
        } else {
            writer.writeCharacters(token.text);
        }
    }
    writer.writeEndDocument();
    return xml;
}

/** The position of the end tag of the element that starts at a position. */
int endOf(const Tokens &tokens, int start)
{
    int depth = 0;
    for (int i = start;; ++i) {
        if (tokens.at(i).type == QXmlStreamReader::StartElement)
            ++depth;
        else if (tokens.at(i).type == QXmlStreamReader::EndElement && --depth == 0)
            return i;
    }
}

/** The names of the elements that enclose a position, the nearest last. */
QStringList enclosing(const Tokens &tokens, int position)
{
    QStringList names;
    for (int i = 0; i < position; ++i) {
        if (tokens.at(i).type == QXmlStreamReader::StartElement)
            names.append(tokens.at(i).text);
        else if (tokens.at(i).type == QXmlStreamReader::EndElement)
            names.removeLast();
    }
    return names;
}

/** Calls @p visit for every element of the rich binder, with its position. */
void forEachElement(const std::function<void(const Tokens &, int)> &visit)
{
    const Tokens tokens = tokensOf(richBinder());
    for (int i = 0; i < tokens.size(); ++i) {
        if (tokens.at(i).type == QXmlStreamReader::StartElement)
            visit(tokens, i);
    }
}

/** Elements whose own text counts: what stands in them isn't for other elements. */
bool holdsText(const Tokens &tokens, int start)
{
    static const QStringList containers = {u"TavelinorProject"_s,
                                           u"Binder"_s,
                                           u"BinderItem"_s,
                                           u"MetaData"_s,
                                           u"CustomMetaData"_s,
                                           u"MetaDataItem"_s,
                                           u"TextSettings"_s,
                                           u"MediaSettings"_s,
                                           u"CorkboardAndOutliner"_s,
                                           u"CorkboardSettings"_s,
                                           u"FreeformCorkboardDocuments"_s,
                                           u"Keywords"_s,
                                           u"Keyword"_s,
                                           u"References"_s,
                                           u"Children"_s,
                                           u"LabelSettings"_s,
                                           u"Labels"_s,
                                           u"StatusSettings"_s,
                                           u"StatusItems"_s,
                                           u"Collections"_s,
                                           u"Collection"_s,
                                           u"BinderIDs"_s,
                                           u"CustomMetaDataSettings"_s,
                                           u"ProjectProperties"_s,
                                           u"ProjectTargets"_s,
                                           u"Favorites"_s,
                                           u"AutoCompleteList"_s,
                                           u"BackupSettings"_s,
                                           u"ProjectReferences"_s,
                                           u"PrintSettings"_s,
                                           u"UserProjectData"_s,
                                           u"Odd"_s};
    return !containers.contains(tokens.at(start).text);
}

bool isFavorite(const Token &token)
{
    static const QStringList favorites = {u"3"_s, u"5"_s};
    return token.type == QXmlStreamReader::StartElement && token.text == u"BinderItem"
        && favorites.contains(token.attributes.value(0).second);
}

/** Whether an element is or holds an item that a favorite of the rich binder names. */
bool holdsFavorite(const Tokens &tokens, int start)
{
    const auto begin = tokens.cbegin();
    return std::any_of(begin + start, begin + endOf(tokens, start), isFavorite);
}

/** Whether an element may hold only one kind of element. */
bool isStrictList(const QString &name, const QStringList &parents)
{
    if (parents.contains(u"Keyword"))
        return false;
    static const QStringList lists = {u"Binder"_s, u"Children"_s, u"Labels"_s, u"StatusItems"_s};
    return lists.contains(name);
}

/** What becomes of a binder that is read, written and read again. */
enum Outcome {
    Fails, ///< It isn't read in the first place.
    Survives, ///< What is read is written and read again, and then stays as it is.
    IsLost, ///< What is written can't be read again.
    IsUnstable, ///< It changes with every pass.
};

Outcome outcomeOf(const QByteArray &binder)
{
    TestBinderProject first;
    if (!first.read(binder))
        return Fails;
    // The first pass may drop what belongs to nothing, such as cards of items that aren't there.
    TestBinderProject second;
    if (!second.read(first.write()))
        return IsLost;
    const QByteArray settled = second.write();
    TestBinderProject third;
    if (!third.read(settled))
        return IsLost;
    return third.write() == settled ? Survives : IsUnstable;
}

Outcome survivesIf(bool survives)
{
    return survives ? Survives : Fails;
}

} // namespace

class TstBinderRoundTrip : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aRandomTreeSurvives_data();
    void aRandomTreeSurvives();
    void everySectionSurvives_data();
    void everySectionSurvives();
    void aRandomBinderSurvivesInEveryTimeZone_data();
    void aRandomBinderSurvivesInEveryTimeZone();
    void aRandomTreeOfAMobileProjectIsStable();
    void aMobileBinderHoldsNoneOfTheLaterSections();
    void theFirstGrammarKeepsAllButTheUuids();
    void theRichBinderSurvives();
    void aBinderSurvivesWithoutItsIndentation();

    void onlyTheVersionAndIdsThatAreNeededAreAttributesThatMustBeThere();
    void attributesWithoutSenseAreNoErrorExceptInIdentities();
    void unknownAttributesAreIgnored();
    void onlyTheFieldOfCustomMetaDataAndFavoriteItemsAreElementsThatMustBeThere();
    void anElementUnderAnotherNameIsSkippedUnlessItIsNeeded();
    void anUnknownElementIsSkippedExceptInListsOfOneKind();
    void anElementInsideATextNeverCrashesTheReader();
    void textsWithoutSenseAreNoErrorExceptInIdentities();
    void commentsAndInstructionsChangeNothing();
    void elementsInAnotherOrderAreNoError();

    void aBinderThatIsCutOffFails();
    void aSmallBinderThatIsCutOffAnywhereFails();
    void aBinderWithFlippedBitsNeverCrashesTheReader_data();
    void aBinderWithFlippedBitsNeverCrashesTheReader();
    void aBinderWithAPieceMovedNeverCrashesTheReader();
};

void TstBinderRoundTrip::aRandomTreeSurvives_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<int>("binderVersion");
    QTest::addColumn<int>("formatVersion");
    QTest::addColumn<bool>("withIds");
    QTest::addColumn<int>("deepest");
    for (quint32 seed = 1; seed <= 4; ++seed) {
        QTest::addRow("ids and uuids, %u", seed) << seed << 2 << 18 << true << 12;
        QTest::addRow("uuids, %u", seed) << seed << 3 << 23 << false << 12;
    }
    QTest::newRow("deep") << 9U << 2 << 18 << true << 500;
    QTest::newRow("flat") << 9U << 2 << 18 << true << 1;
}

void TstBinderRoundTrip::aRandomTreeSurvives()
{
    QFETCH(quint32, seed);
    QFETCH(int, binderVersion);
    QFETCH(int, formatVersion);
    QFETCH(bool, withIds);
    QFETCH(int, deepest);
    TestBinderProject project(
        makeRandomTree({.nodes = Nodes, .deepest = deepest, .seed = seed, .withIds = withIds}));
    project.mFormatVersion = TVL::FormatVersion(formatVersion);
    project.enterTree();
    QRandomGenerator random(seed);
    fillRandomSections(&project, &random);
    const QByteArray binder = project.write();

    TestBinderProject reread;
    reread.mFormatVersion = project.mFormatVersion;
    QString error;
    QVERIFY2(reread.read(binder, &error), qPrintable(error));
    QCOMPARE(int(reread.mInfo.mBinderVersion), binderVersion);
    QString where;
    QVERIFY2(equalTrees(project.mRoot.get(), reread.mRoot.get(), &where), qPrintable(where));
    QCOMPARE(reread.mUuidMap.size(), Nodes);
    QCOMPARE(reread.mIdMap.size(), withIds ? Nodes : 0);
    QCOMPARE(differingSection(project, reread), QString());
    QVERIFY(reread.write() == binder);
}

void TstBinderRoundTrip::everySectionSurvives_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<int>("formatVersion");
    QTest::addColumn<bool>("mobile");
    for (quint32 seed = 1; seed <= 150; ++seed) {
        QTest::addRow("desktop, %u", seed) << seed << 18 << false;
        QTest::addRow("without ids, %u", seed) << seed << 23 << false;
        QTest::addRow("mobile, %u", seed) << seed << 18 << true;
    }
}

void TstBinderRoundTrip::everySectionSurvives()
{
    QFETCH(quint32, seed);
    QFETCH(int, formatVersion);
    QFETCH(bool, mobile);
    const bool withIds = formatVersion == TVL::FormatVersion18;
    TestBinderProject project(
        makeRandomTree({.nodes = 12, .deepest = 4, .seed = seed, .withIds = withIds}));
    project.mFormatVersion = TVL::FormatVersion(formatVersion);
    project.mIsMobile = mobile;
    project.enterTree();
    QRandomGenerator random(seed);
    fillRandomSections(&project, &random);
    const QByteArray binder = project.write();

    TestBinderProject reread;
    reread.mFormatVersion = project.mFormatVersion;
    reread.mIsMobile = mobile;
    QString error;
    QVERIFY2(reread.read(binder, &error), qPrintable(error));
    if (!mobile)
        QCOMPARE(differingSection(project, reread), QString());
    QCOMPARE(reread.write(), binder);
}

void TstBinderRoundTrip::aRandomBinderSurvivesInEveryTimeZone_data()
{
    constexpr int Zones = 40;
    QTest::addColumn<QByteArray>("zone");
    QTest::addColumn<quint32>("seed");
    // Zones that change their time twice in a fortnight, and some of all others.
    QList<QByteArray> zones = {"America/Recife", "America/Noronha", "America/Boa_Vista",
                               "Asia/Gaza"};
    const QList<QByteArray> all = QTimeZone::availableTimeZoneIds();
    const int step = std::max(1, int(all.size()) / Zones);
    for (int i = 0; zones.size() < Zones && i < all.size(); i += step) {
        if (!zones.contains(all.at(i)))
            zones.append(all.at(i));
    }
    for (qsizetype i = 0; i < zones.size(); ++i)
        QTest::newRow(zones.at(i).constData()) << zones.at(i) << quint32(i + 1);
}

void TstBinderRoundTrip::aRandomBinderSurvivesInEveryTimeZone()
{
    QFETCH(QByteArray, zone);
    QFETCH(quint32, seed);
    QRandomGenerator random(seed);
    TestBinderProject project(makeRandomTree({.nodes = 200, .deepest = 6, .seed = seed}));
    project.mFormatVersion = TVL::FormatVersion18;
    project.enterTree();
    fillRandomSections(&project, &random);

    const LocalZone local(zone);
    const QTimeZone table(zone);
    tvlForEachNode(project.mRoot.get(), [&](TVLProjectNode *node) {
        // Anywhere, and not far from where the time is changed.
        const QDateTime date =
            QDateTime::fromSecsSinceEpoch(random.bounded(2'000'000'000), Qt::UTC);
        node->mCreated = date;
        const QDateTime change = table.nextTransition(date).atUtc;
        node->mModified =
            change.isValid() ? change.addSecs(random.bounded(-20'000, 20'000)).toUTC() : date;
    });
    const QByteArray binder = project.write();
    TestBinderProject reread;
    reread.mFormatVersion = project.mFormatVersion;
    QString error;
    QVERIFY2(reread.read(binder, &error), qPrintable(error));
    QString where;
    QVERIFY2(equalTrees(project.mRoot.get(), reread.mRoot.get(), &where), qPrintable(where));
    QCOMPARE(differingSection(project, reread), QString());
    QCOMPARE(reread.write(), binder);
}

void TstBinderRoundTrip::aRandomTreeOfAMobileProjectIsStable()
{
    TestBinderProject project(makeRandomTree({.nodes = 2000, .deepest = 8, .seed = 7}));
    project.mIsMobile = true;
    project.mInfo.mModified = sampleModified();
    project.mInfo.mSyncId = QUuid::createUuid();
    project.mInfo.mChecksumsId = QUuid::createUuid();
    const QByteArray binder = project.write();
    TestBinderProject reread;
    reread.mIsMobile = true;
    QVERIFY(reread.read(binder));
    QCOMPARE(reread.mUuidMap.size(), 2000);
    QVERIFY(reread.write() == binder);
}

void TstBinderRoundTrip::aMobileBinderHoldsNoneOfTheLaterSections()
{
    TestBinderProject project;
    QVERIFY(project.read(richBinder()));
    project.mIsMobile = true;
    QStringList sections;
    const Tokens tokens = tokensOf(project.write());
    for (int i = 0; i < tokens.size(); ++i) {
        if (tokens.at(i).type == QXmlStreamReader::StartElement && enclosing(tokens, i).size() == 1)
            sections.append(tokens.at(i).text);
    }
    QCOMPARE(sections,
             QStringList(
                 {u"Binder"_s, u"LabelSettings"_s, u"StatusSettings"_s, u"TemplateFolderUUID"_s}));
}

void TstBinderRoundTrip::theFirstGrammarKeepsAllButTheUuids()
{
    TestBinderProject project(makeRandomTree({.nodes = 5000, .deepest = 12, .seed = 11}));
    project.mInfo.mModified = sampleModified();
    project.mInfo.mBinderVersion = TVL::BinderVersion1;
    project.mFormatVersion = TVL::FormatVersion16;
    TestBinderProject reread;
    QVERIFY(reread.read(project.write()));
    QCOMPARE(int(reread.mInfo.mBinderVersion), 1);
    QCOMPARE(reread.mUuidMap.size(), 5000);
    tvlForEachNode(project.mRoot.get(), [&](TVLProjectNode *node) {
        TVLProjectNode *twin = reread.mUuidMap.value(reread.mIdMap.value(node->mId));
        QVERIFY(twin && twin->mUuid != node->mUuid);
        twin->mUuid = node->mUuid;
    });
    QString where;
    QVERIFY2(equalTrees(project.mRoot.get(), reread.mRoot.get(), &where), qPrintable(where));
}

void TstBinderRoundTrip::theRichBinderSurvives()
{
    DebugLog log;
    QCOMPARE(outcomeOf(richBinder()), Survives);
    QCOMPARE(log.lines(), QStringList());
}

void TstBinderRoundTrip::aBinderSurvivesWithoutItsIndentation()
{
    Tokens tokens = tokensOf(richBinder());
    tokens.removeIf([](const Token &token) {
        return token.type == QXmlStreamReader::Characters && token.text.trimmed().isEmpty();
    });
    TestBinderProject project;
    QVERIFY(project.read(xmlOf(tokens)));
    project.mUserProjectData = richUserProjectData();
    QCOMPARE(project.write(), richBinder());
}

void TstBinderRoundTrip::onlyTheVersionAndIdsThatAreNeededAreAttributesThatMustBeThere()
{
    const DebugLog log;
    int removed = 0;
    forEachElement([&](const Tokens &tokens, int element) {
        for (int i = 0; i < tokens.at(element).attributes.size(); ++i) {
            Tokens changed = tokens;
            const QString name = changed[element].attributes.takeAt(i).first;
            const bool names = tokens.at(element).text == u"Keyword"
                || (isFavorite(tokens.at(element)) && name == u"ID");
            const bool expected = name != u"Version" && !names;
            QVERIFY2(outcomeOf(xmlOf(changed)) == survivesIf(expected), qPrintable(name));
            ++removed;
        }
    });
    QVERIFY(removed > 90);
}

void TstBinderRoundTrip::attributesWithoutSenseAreNoErrorExceptInIdentities()
{
    const DebugLog log;
    for (const QString &value :
         {u"?"_s, QString(), u"-99999999999999999999"_s, QString(5000, u'x')}) {
        forEachElement([&](const Tokens &tokens, int element) {
            for (int i = 0; i < tokens.at(element).attributes.size(); ++i) {
                Tokens changed = tokens;
                changed[element].attributes[i].second = value;
                // Without a version no item has an id, so that the favorites name none.
                const QString name = tokens.at(element).attributes.at(i).first;
                const bool expected = name != u"Version" && tokens.at(element).text != u"Keyword"
                    && !(isFavorite(tokens.at(element)) && name == u"ID");
                QVERIFY2(outcomeOf(xmlOf(changed)) == survivesIf(expected), qPrintable(name));
            }
        });
    }
}

void TstBinderRoundTrip::unknownAttributesAreIgnored()
{
    Tokens tokens = tokensOf(richBinder());
    for (Token &token : tokens) {
        if (token.type == QXmlStreamReader::StartElement)
            token.attributes.prepend({u"Unknown"_s, u"Yes"_s});
    }
    TestBinderProject project;
    QVERIFY(project.read(xmlOf(tokens)));
    project.mUserProjectData = richUserProjectData();
    QCOMPARE(project.write(), richBinder());
}

void TstBinderRoundTrip::onlyTheFieldOfCustomMetaDataAndFavoriteItemsAreElementsThatMustBeThere()
{
    const DebugLog log;
    int removed = 0;
    forEachElement([&](const Tokens &tokens, int element) {
        Tokens changed = tokens;
        const int end = endOf(tokens, element);
        changed.remove(element, end - element + 1);
        const QString name = tokens.at(element).text;
        const bool expected =
            name != u"TavelinorProject" && name != u"FieldID" && !holdsFavorite(tokens, element);
        QVERIFY2(outcomeOf(xmlOf(changed)) == survivesIf(expected), qPrintable(name));
        ++removed;
    });
    QVERIFY(removed > 100);
}

void TstBinderRoundTrip::anElementUnderAnotherNameIsSkippedUnlessItIsNeeded()
{
    const DebugLog log;
    forEachElement([](const Tokens &tokens, int element) {
        Tokens changed = tokens;
        changed[element].text = u"Unknown"_s;
        const QString name = tokens.at(element).text;
        const QStringList parents = enclosing(tokens, element);
        const bool expected = !parents.isEmpty() && name != u"FieldID"
            && !isStrictList(parents.constLast(), parents) && !holdsFavorite(tokens, element);
        QVERIFY2(outcomeOf(xmlOf(changed)) == survivesIf(expected), qPrintable(name));
    });
}

void TstBinderRoundTrip::anUnknownElementIsSkippedExceptInListsOfOneKind()
{
    const DebugLog log;
    const Tokens unknown = tokensOf("<Unknown a='b'>text<BinderItem "
                                    "ID='77'><Title>No</Title></BinderItem><Version/></Unknown>");
    int inserted = 0;
    forEachElement([&](const Tokens &tokens, int element) {
        if (holdsText(tokens, element))
            return;
        // As the first child, and as the last.
        for (const int position : {element + 1, endOf(tokens, element)}) {
            Tokens changed = tokens.first(position) + unknown + tokens.sliced(position);
            TestBinderProject project;
            const bool ok = project.read(xmlOf(changed));
            const QString name = tokens.at(element).text;
            QVERIFY2(ok != isStrictList(name, enclosing(tokens, element)), qPrintable(name));
            if (ok) {
                project.mUserProjectData = richUserProjectData();
                QCOMPARE(project.write(), richBinder());
            }
            ++inserted;
        }
    });
    QVERIFY(inserted > 80);
}

void TstBinderRoundTrip::anElementInsideATextNeverCrashesTheReader()
{
    const DebugLog log;
    const Tokens unknown = tokensOf("<Unknown>text</Unknown>");
    forEachElement([&](const Tokens &tokens, int element) {
        if (!holdsText(tokens, element))
            return;
        TestBinderProject project;
        QString error;
        const bool ok = project.read(
            xmlOf(tokens.first(element + 1) + unknown + tokens.sliced(element + 1)), &error);
        QCOMPARE(ok, error.isEmpty());
    });
}

void TstBinderRoundTrip::textsWithoutSenseAreNoErrorExceptInIdentities()
{
    const DebugLog log;
    for (const QString &text : {u"?"_s, u"-99999999999999999999"_s, QString(5000, u'x')}) {
        forEachElement([&](const Tokens &tokens, int element) {
            if (!holdsText(tokens, element))
                return;
            const Tokens characters = {{QXmlStreamReader::Characters, text, {}}};
            const Tokens changed =
                tokens.first(element + 1) + characters + tokens.sliced(endOf(tokens, element));
            const QString name = tokens.at(element).text;
            const bool isFavorite = enclosing(tokens, element).constLast() == u"Favorites";
            const bool expected = name != u"KeywordID" && !isFavorite;
            QVERIFY2(outcomeOf(xmlOf(changed)) == survivesIf(expected), qPrintable(name));
        });
    }
}

void TstBinderRoundTrip::commentsAndInstructionsChangeNothing()
{
    QByteArray binder = richBinder();
    const qsizetype userData = binder.indexOf("<UserProjectData>");
    QByteArray head = binder.first(userData);
    head.replace("</", "<!-- <Foo> --><?do it?></");
    TestBinderProject project;
    QString error;
    QVERIFY2(project.read(head + binder.sliced(userData), &error), qPrintable(error));
    project.mUserProjectData = richUserProjectData();
    QCOMPARE(project.write(), richBinder());
}

void TstBinderRoundTrip::elementsInAnotherOrderAreNoError()
{
    // The last child of each element becomes its first.
    const DebugLog log;
    forEachElement([](const Tokens &tokens, int element) {
        const int end = endOf(tokens, element);
        int last = -1;
        for (int i = element + 1; i < end; ++i) {
            if (tokens.at(i).type == QXmlStreamReader::StartElement) {
                last = i;
                i = endOf(tokens, i);
            }
        }
        if (last < 0)
            return;
        const int size = endOf(tokens, last) - last + 1;
        Tokens changed = tokens;
        const Tokens child = changed.mid(last, size);
        changed.remove(last, size);
        changed = changed.first(element + 1) + child + changed.sliced(element + 1);
        QVERIFY2(outcomeOf(xmlOf(changed)) == Survives, qPrintable(tokens.at(element).text));
    });
}

void TstBinderRoundTrip::aBinderThatIsCutOffFails()
{
    const DebugLog log;
    const QByteArray binder = richBinder();
    const QByteArray end = "</TavelinorProject>";
    const qsizetype complete = binder.indexOf(end) + end.size();
    for (qsizetype size = 0; size <= binder.size(); size += 97) {
        QString error;
        TestBinderProject project;
        QCOMPARE(project.read(binder.first(size), &error), size >= complete);
    }
    // The last bytes, one by one.
    for (qsizetype size = binder.size() - 200; size <= binder.size(); ++size) {
        TestBinderProject project;
        QCOMPARE(project.read(binder.first(size)), size >= complete);
    }
}

void TstBinderRoundTrip::aSmallBinderThatIsCutOffAnywhereFails()
{
    const DebugLog log;
    const QByteArray binder = binderXml(
        sampleItem(
            "<Title>\xc3\xbc</Title><MetaData><LabelID>3</LabelID><CustomMetaData><MetaDataItem>"
            "<FieldID>a</FieldID></MetaDataItem></CustomMetaData></MetaData>"
            "<CorkboardAndOutliner><CorkboardSettings/></CorkboardAndOutliner>"
            "<Keywords><KeywordID>12</KeywordID></Keywords>"
            "<References><Reference BinderID='3'>x</Reference></References>"
            "<Children><BinderItem UUID='x'><Title>b</Title></BinderItem></Children>"),
        "<LabelSettings><Labels><Label ID='2'/></Labels></LabelSettings>"
        "<TemplateFolderID>3</TemplateFolderID>"
        "<Collections><Collection><BinderIDs><BinderID>3</BinderID></BinderIDs></Collection></"
        "Collections>"
        "<Unknown><Foo/></Unknown><UserProjectData>x</UserProjectData>");
    for (qsizetype size = 0; size <= binder.size(); ++size) {
        TestBinderProject project;
        // Behind the root's end there is the last line break alone.
        QCOMPARE(project.read(binder.first(size)), size >= binder.size() - 1);
    }
}

void TstBinderRoundTrip::aBinderWithFlippedBitsNeverCrashesTheReader_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 3; ++seed)
        QTest::addRow("%u", seed) << seed;
}

void TstBinderRoundTrip::aBinderWithFlippedBitsNeverCrashesTheReader()
{
    QFETCH(quint32, seed);
    const DebugLog log;
    QRandomGenerator random(seed);
    int read = 0;
    for (qsizetype position = 0; position < richBinder().size(); position += testStep(11)) {
        QByteArray binder = richBinder();
        binder[position] = char(binder.at(position) ^ (1 << random.bounded(8)));
        const Outcome outcome = outcomeOf(binder);
        QVERIFY2(outcome != IsLost, binder.mid(position - 50, 100).constData());
        read += outcome == Fails ? 0 : 1;
    }
    QVERIFY(read > 0);
}

void TstBinderRoundTrip::aBinderWithAPieceMovedNeverCrashesTheReader()
{
    const DebugLog log;
    QRandomGenerator random(5);
    const int size = int(richBinder().size());
    for (int i = 0; i < 1000; ++i) {
        QByteArray binder = richBinder();
        const int start = random.bounded(size - 200);
        const QByteArray piece = binder.mid(start, random.bounded(200));
        if (random.bounded(2))
            binder.remove(start, piece.size());
        binder.insert(random.bounded(int(binder.size())), piece);
        // Whether it reads is open; that what was read can be written and read again isn't.
        QVERIFY(outcomeOf(binder) != IsLost);
    }
}

TVL_TEST(TstBinderRoundTrip)
#include "tst_binderroundtrip.moc"
