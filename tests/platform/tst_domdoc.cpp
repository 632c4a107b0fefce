#include "FailingDevice.h"
#include "TestMain.h"

#include "TVLDomDoc.h"

#include <QBuffer>
#include <QDomElement>
#include <QTest>

using namespace Qt::StringLiterals;

/** A cursor over the elements of an XML file. */
class TstDomDoc : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPathLeadsToItsFirstElement_data();
    void aPathLeadsToItsFirstElement();
    void aPathMayBeginAtTheWorkElement();
    void thereIsNoMoveWithoutAnElement();
    void theNextSiblingOfANameFollows();
    void theWorkElementCanBeSet();
    void attributesAreToldFromThoseThatAreMissing();
    void theTextOfAnElementIsThatOfAllInIt_data();
    void theTextOfAnElementIsThatOfAllInIt();
    void faultsAreToldWithTheirPlace_data();
    void faultsAreToldWithTheirPlace();
    void newContentTakesThePlaceOfOld();
    void aDeviceThatFailsIsAFault();
    void hostileFilesAreRefused_data();
    void hostileFilesAreRefused();
    void harmlessDocumentTypesAreTaken_data();
    void harmlessDocumentTypesAreTaken();
    void elementsMayLieFiveHundredDeep();
};

namespace {

bool setBytes(TVLDomDoc *doc, const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    return doc->setContent(&buffer);
}

QString attributeOf(const TVLDomDoc &doc)
{
    return doc.currentElement().attribute(u"n"_s);
}

QByteArray nested(qsizetype depth)
{
    return QByteArray("<a>").repeated(depth) + QByteArray("</a>").repeated(depth);
}

/** Entities of which each is ten of the one before it. */
QByteArray growingEntities(const QByteArray &declaration, const QByteArray &reference)
{
    QByteArray entities = "<!ENTITY " + declaration + "e0 '0123456789'>";
    for (int i = 1; i < 10; ++i) {
        const QByteArray one = reference + 'e' + QByteArray::number(i - 1) + ';';
        entities += "<!ENTITY " + declaration + 'e' + QByteArray::number(i) + " '"
            + one.repeated(10) + "'>";
    }
    return entities;
}

} // namespace

void TstDomDoc::aPathLeadsToItsFirstElement_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("name");
    QTest::newRow("root") << u"/r"_s << u"root"_s;
    QTest::newRow("first of several") << u"/r/a"_s << u"1"_s;
    QTest::newRow("among others") << u"/r/b"_s << u"3"_s;
    QTest::newRow("in one that isn't the first") << u"/r/a/c"_s << u"4"_s;
    QTest::newRow("with a slash behind it") << u"/r/a/c/"_s << u"4"_s;
    QTest::newRow("with a prefix") << u"/r/x:y"_s << u"6"_s;
}

void TstDomDoc::aPathLeadsToItsFirstElement()
{
    QFETCH(QString, path);
    TVLDomDoc doc;
    QVERIFY(doc.setContent(u"<r n='root'><a n='1'/><a n='2'><b n='no'/><c n='4'/></a><b n='3'/>"
                           "<a><c n='no'/></a><x:y n='6'/></r>"_s));
    QVERIFY(doc.currentElement().isNull());
    QVERIFY(doc.cd(path));
    QTEST(attributeOf(doc), "name");
}

void TstDomDoc::aPathMayBeginAtTheWorkElement()
{
    TVLDomDoc doc;
    QVERIFY(doc.setContent(u"<r><a n='1'/><b><a n='2'><c n='3'/></a></b></r>"_s));
    QVERIFY(!doc.cd(u"r"_s));
    QVERIFY(doc.cd(u"/r/b"_s));
    QVERIFY(doc.cd(u"a"_s));
    QCOMPARE(attributeOf(doc), u"2"_s);
    QVERIFY(doc.cd(u"/r/b"_s));
    QVERIFY(doc.cd(u"a/c"_s));
    QCOMPARE(attributeOf(doc), u"3"_s);
}

void TstDomDoc::thereIsNoMoveWithoutAnElement()
{
    TVLDomDoc doc;
    for (const QString &path : {u"/r"_s, u"r"_s, u"/"_s, u""_s})
        QVERIFY(!doc.cd(path));
    QVERIFY(!doc.cdNext(u"r"_s));
    QVERIFY(doc.currentChild().isNull());
    QVERIFY(doc.setContent(u"<r><a n='1'/></r>"_s));
    QVERIFY(doc.cd(u"/r/a"_s));
    for (const QString &path : {u"/a"_s, u"/r/b"_s, u"/R"_s, u"/r/a/a"_s, u"a"_s, u"/"_s, u""_s})
        QVERIFY2(!doc.cd(path), qPrintable(path));
    QVERIFY(!doc.cdNext(u"a"_s));
    QCOMPARE(attributeOf(doc), u"1"_s);
}

void TstDomDoc::theNextSiblingOfANameFollows()
{
    TVLDomDoc doc;
    QVERIFY(doc.setContent(u"<r><a n='1'/> words <b/><a n='2'><a n='no'/></a><a n='3'/></r>"_s));
    QVERIFY(doc.cd(u"/r/a"_s));
    QVERIFY(doc.cdNext(u"/r/a"_s));
    QCOMPARE(attributeOf(doc), u"2"_s);
    QVERIFY(doc.cdNext(u"a"_s));
    QCOMPARE(attributeOf(doc), u"3"_s);
    QVERIFY(!doc.cdNext(u"a"_s));
}

void TstDomDoc::theWorkElementCanBeSet()
{
    TVLDomDoc doc;
    QVERIFY(doc.setContent(u"<r>words<a n='1'><b n='2'/></a></r>"_s));
    QVERIFY(doc.cd(u"/r"_s));
    const QDomElement child = doc.currentChild();
    QCOMPARE(child.tagName(), u"a"_s);
    doc.setWorkElement(child);
    QCOMPARE(attributeOf(doc), u"1"_s);
    QVERIFY(doc.cd(u"b"_s));
    QCOMPARE(attributeOf(doc), u"2"_s);
    QVERIFY(doc.currentChild().isNull());
    doc.setWorkElement(QDomElement());
    QString text = u"old"_s;
    QVERIFY(!doc.get(&text));
    QCOMPARE(text, QString());
}

void TstDomDoc::attributesAreToldFromThoseThatAreMissing()
{
    TVLDomDoc doc;
    QString value;
    bool found = true;
    QVERIFY(!doc.find(u"a"_s));
    doc.getAttr(&value, u"else"_s, &found);
    QCOMPARE(value, u"else"_s);
    QVERIFY(!found);
    QVERIFY(doc.setContent(u"<r a='&lt;1&#10;2' b=''><c a='3'/></r>"_s));
    QVERIFY(doc.cd(u"/r"_s));
    QVERIFY(doc.find(u"a"_s));
    doc.getAttr(&value, u"else"_s, &found);
    QCOMPARE(value, u"<1\n2"_s);
    QVERIFY(found);
    QVERIFY(doc.find(u"b"_s));
    doc.getAttr(&value, u"else"_s, &found);
    QCOMPARE(value, QString());
    QVERIFY(found);
    QVERIFY(!doc.find(u"c"_s));
    doc.getAttr(&value);
    QCOMPARE(value, QString());
    // Of the element that is the work element then.
    QVERIFY(doc.find(u"a"_s));
    QVERIFY(doc.cd(u"c"_s));
    doc.getAttr(&value);
    QCOMPARE(value, u"3"_s);
}

void TstDomDoc::theTextOfAnElementIsThatOfAllInIt_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << u""_s << u""_s;
    QTest::newRow("words") << u"a &amp; b"_s << u"a & b"_s;
    QTest::newRow("in elements") << u"a<b>b</b>c"_s << u"abc"_s;
    QTest::newRow("blanks between elements") << u"<b>a</b> <i>b</i>\n"_s << u"a b\n"_s;
    QTest::newRow("character data") << u"<![CDATA[a <b> ]]>&#160;"_s << u"a <b> \u00a0"_s;
    QTest::newRow("comments and instructions") << u"a<!-- b --><?c d?>e"_s << u"ae"_s;
}

void TstDomDoc::theTextOfAnElementIsThatOfAllInIt()
{
    QFETCH(QString, content);
    TVLDomDoc doc;
    QVERIFY(doc.setContent(u"<r>"_s + content + u"</r>"_s));
    QVERIFY(doc.cd(u"/r"_s));
    QString text;
    QVERIFY(doc.get(&text));
    QTEST(text, "text");
}

void TstDomDoc::faultsAreToldWithTheirPlace_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("error");
    QTest::addColumn<int>("line");
    QTest::addColumn<int>("column");
    QTest::newRow("nothing") << QByteArray() << u"Premature end of document."_s << 1 << 0;
    QTest::newRow("cut off") << QByteArray("<r>\n<a/>") << u"Premature end of document."_s << 2
                             << 4;
    QTest::newRow("not closed") << QByteArray("<r>\n\n<a></r>")
                                << u"Opening and ending tag mismatch."_s << 3 << 7;
    QTest::newRow("bytes of no character")
        << QByteArray("<r>\xc3\x28</r>") << u"Encountered incorrectly encoded content."_s << 1 << 2;
}

void TstDomDoc::faultsAreToldWithTheirPlace()
{
    QFETCH(QByteArray, content);
    TVLDomDoc doc;
    QVERIFY(!setBytes(&doc, content));
    QTEST(doc.errorString(), "error");
    QTEST(doc.errorLine(), "line");
    QTEST(doc.errorColumn(), "column");
    QVERIFY(!doc.cd(u"/r"_s));
}

void TstDomDoc::newContentTakesThePlaceOfOld()
{
    TVLDomDoc doc;
    QVERIFY(doc.setContent(u"<r/>"_s));
    QVERIFY(doc.cd(u"/r"_s));
    QVERIFY(!doc.setContent(u"<r>"_s));
    QVERIFY(!doc.cd(u"/r"_s));
    QVERIFY(doc.currentElement().isNull());
    // Text is text, whatever it says that it's encoded in.
    QVERIFY(doc.setContent(u"<?xml version='1.0' encoding='ISO-8859-1'?><s n='\u4e00'/>"_s));
    QVERIFY(doc.cd(u"/s"_s));
    QCOMPARE(attributeOf(doc), u"\u4e00"_s);
    QCOMPARE(doc.errorString(), QString());
    QCOMPARE(doc.errorLine(), 0);
    QCOMPARE(doc.errorColumn(), 0);
}

void TstDomDoc::aDeviceThatFailsIsAFault()
{
    const QByteArray content = "<r>" + QByteArray(100'000, 'x') + "</r>";
    for (const int readable : {0, 3, 50'000, 100'004}) {
        FailingDevice device(content, readable);
        TVLDomDoc doc;
        QVERIFY(!doc.setContent(&device));
        QVERIFY(!doc.errorString().isEmpty());
    }
}

void TstDomDoc::hostileFilesAreRefused_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("error");
    const QString type = u"The file has a document type of its own."_s;
    const auto row = [](const char *name, const QByteArray &content, const QString &error) {
        QTest::newRow(name) << content << error;
    };
    row("entities that grow", "<!DOCTYPE r [" + growingEntities("", "&") + "]><r>&e9;</r>", type);
    row("entities that grow in an attribute",
        "<!DOCTYPE r [" + growingEntities("", "&") + "]><r n='&e9;'/>", type);
    row("entities that grow in a default",
        "<!DOCTYPE r [" + growingEntities("", "&") + "<!ATTLIST r n CDATA '&e9;'>]><r/>",
        u"Entity expands to more characters than the entity expansion limit."_s);
    row("entities of declarations that grow",
        "<!DOCTYPE r [" + growingEntities("% ", "%") + "%e9;]><r/>", u"Unexpected '%'."_s);
    row("declarations that come again",
        "<!DOCTYPE r [<!ENTITY % a '" + QByteArray("<!ATTLIST r n CDATA \"x\">").repeated(1000)
            + "'>" + QByteArray("%a;").repeated(10'000) + "]><r/>",
        u"Entity expands to more characters than the entity expansion limit."_s);
    row("one that stands for itself", "<!DOCTYPE r [<!ENTITY a '&a;'>]><r>&a;</r>", type);
    row("one from a file", "<!DOCTYPE r [<!ENTITY a SYSTEM 'file:///etc/passwd'>]><r>&a;</r>",
        type);
    row("a large default",
        "<!DOCTYPE r [<!ATTLIST a n CDATA '" + QByteArray(100'000, 'x') + "'>]><r>"
            + QByteArray("<a/>").repeated(10'000) + "</r>",
        type);
    row("one that stands elsewhere", "<!DOCTYPE r SYSTEM 'r.dtd'><r>&a;</r>",
        u"Entity 'a' not declared."_s);
    row("one that stands elsewhere, in an attribute", "<!DOCTYPE r SYSTEM 'r.dtd'><r n='&a;'/>",
        u"Entity 'a' not declared."_s);
    const QString depth = u"The file is nested too deeply."_s;
    row("one too deep", nested(501), depth);
    row("a hundred thousand too deep", nested(100'500), depth);
    row("not closed and too deep", QByteArray("<a>").repeated(1'000'000), depth);
}

void TstDomDoc::hostileFilesAreRefused()
{
    QFETCH(QByteArray, content);
    TVLDomDoc doc;
    QVERIFY(!setBytes(&doc, content));
    QTEST(doc.errorString(), "error");
}

void TstDomDoc::harmlessDocumentTypesAreTaken_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::newRow("name") << QByteArray("<!DOCTYPE r>");
    QTest::newRow("file") << QByteArray("<!DOCTYPE r SYSTEM 'r.dtd'>");
    QTest::newRow("public") << QByteArray("<!DOCTYPE r PUBLIC '-//A//B' 'http://a/r.dtd'>");
}

void TstDomDoc::harmlessDocumentTypesAreTaken()
{
    QFETCH(QByteArray, type);
    TVLDomDoc doc;
    QVERIFY(setBytes(&doc, "<?xml version='1.0'?>\n" + type + "\n<r>a &lt; b</r>"));
    QVERIFY(doc.cd(u"/r"_s));
    QString text;
    QVERIFY(doc.get(&text));
    QCOMPARE(text, u"a < b"_s);
}

void TstDomDoc::elementsMayLieFiveHundredDeep()
{
    TVLDomDoc doc;
    QVERIFY(setBytes(&doc, nested(500)));
    QString path;
    for (int i = 0; i < 500; ++i)
        path += u"/a"_s;
    QVERIFY(doc.cd(path));
    QVERIFY(doc.currentChild().isNull());
}

TVL_TEST(TstDomDoc)
#include "tst_domdoc.moc"
