#include "StorageFixtures.h"
#include "TVLProjectFolderFormat.h"
#include "TestMain.h"
#include "TestProject.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Format = TVLProjectFolderFormat;

QByteArray binderWith(const QByteArray &userData)
{
    return binderXml(itemXml(0, "DraftFolder", "Draft"), userData);
}

} // namespace

class TstUserProjectData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rawTextIsCutFromStartToEndTag_data();
    void rawTextIsCutFromStartToEndTag();
    void rawTextOfAFileThatCannotBeReadIsEmpty();
    void rawTextSurvivesOpenAndSaveByteForByte_data();
    void rawTextSurvivesOpenAndSaveByteForByte();
    void rawTextSurvivesTheDeclarationsThatASaveDrops_data();
    void rawTextSurvivesTheDeclarationsThatASaveDrops();
    void rawTextWithoutItsExactTagsIsLostOnSaving_data();
    void rawTextWithoutItsExactTagsIsLostOnSaving();
    void aBinderWhoseRawTextNeverEndsIsNotRead();
    void aFallbackHasNoRawText();
};

void TstUserProjectData::rawTextIsCutFromStartToEndTag_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("data");

    const QString plain = u"<UserProjectData>x</UserProjectData>"_s;
    QTest::newRow("in a binder") << binderWith(plain.toUtf8()) << plain;
    QTest::newRow("nothing else") << plain.toUtf8() << plain;
    QTest::newRow("not even XML") << QByteArray("<<< & ") + plain.toUtf8() + " >" << plain;
    QTest::newRow("empty element") << QByteArray("<UserProjectData></UserProjectData>")
                                   << u"<UserProjectData></UserProjectData>"_s;
    QTest::newRow("first end tag")
        << QByteArray("<UserProjectData>a</UserProjectData>b</UserProjectData>")
        << u"<UserProjectData>a</UserProjectData>"_s;
    QTest::newRow("first start tag")
        << QByteArray("<UserProjectData>a<UserProjectData>b</UserProjectData>")
        << u"<UserProjectData>a<UserProjectData>b</UserProjectData>"_s;
    QTest::newRow("Unicode") << u"<UserProjectData>\u6f22\U0001d11e</UserProjectData>"_s.toUtf8()
                             << u"<UserProjectData>\u6f22\U0001d11e</UserProjectData>"_s;
    QTest::newRow("none") << binderWith({}) << QString();
    QTest::newRow("no end tag") << QByteArray("<UserProjectData>x") << QString();
    QTest::newRow("no start tag") << QByteArray("x</UserProjectData>") << QString();
    QTest::newRow("end tag in front")
        << QByteArray("</UserProjectData><UserProjectData>") << QString();
    QTest::newRow("start tag with an attribute")
        << QByteArray("<UserProjectData a=\"b\">x</UserProjectData>") << QString();
    QTest::newRow("closed at once") << QByteArray("<UserProjectData/>") << QString();
    QTest::newRow("other case") << QByteArray("<userprojectdata>x</userprojectdata>") << QString();
}

void TstUserProjectData::rawTextIsCutFromStartToEndTag()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, data);

    const TestProject project;
    project.writeFile(u"Novel.tavelx"_s, content);
    QCOMPARE(Format::readUserProjectData(project.binderPath()), data);
}

void TstUserProjectData::rawTextOfAFileThatCannotBeReadIsEmpty()
{
    const TestProject project;
    QCOMPARE(Format::readUserProjectData(project.binderPath()), QString());
    project.writeFile(u"Novel.tavelx/file"_s, "in a folder");
    QCOMPARE(Format::readUserProjectData(project.binderPath()), QString());
}

void TstUserProjectData::rawTextSurvivesOpenAndSaveByteForByte_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("text") << QByteArray("some text");
    QTest::newRow("nothing") << QByteArray("");
    QTest::newRow("comments") << QByteArray("<!-- one --><a/><!-- two > & -->");
    QTest::newRow("odd markup") << QByteArray(
        "<a  x = '1'\n y=\"2\" ></a ><b/><b />\t&#65;&amp;&lt;");
    QTest::newRow("raw section") << QByteArray("<![CDATA[<not> & parsed]]>");
    QTest::newRow("instruction") << QByteArray("<?do this?>");
    QTest::newRow("white space") << QByteArray("\n\n      \t  \r\n  x \r");
    QTest::newRow("namespaces") << QByteArray("<n:a xmlns:n=\"urn:x\"><n:b/></n:a>");
    QTest::newRow("Unicode") << u"\u6f22\U0001d11e\u00e9\u200d"_s.toUtf8();
    QTest::newRow("words of a binder")
        << QByteArray("<Binder><BinderItem/></Binder><LabelSettings/>");
    QTest::newRow("undeclared prefix") << QByteArray("<n:a n:b='c'/>");
    QTest::newRow("undeclared entity") << QByteArray("&who; <a b='&what;'/>");
    QTest::newRow("long") << QByteArray("<line>text &amp; more</line>\n").repeated(20000);
}

void TstUserProjectData::rawTextSurvivesOpenAndSaveByteForByte()
{
    QFETCH(QByteArray, content);

    const QByteArray data = "<UserProjectData>" + content + "</UserProjectData>";
    const TestProject project;
    project.writeFile(u"Novel.tavelx"_s, binderWith(data));
    for (int pass = 0; pass < 3; ++pass) {
        const TestModel model = project.open();
        QVERIFY(model);
        QCOMPARE(model->userProjectData(), QString::fromUtf8(data));
        QVERIFY(model->save(true));
        const QByteArray binder = project.readFile(u"Novel.tavelx"_s);
        QCOMPARE(binder.count("<UserProjectData>"), 1);
        QVERIFY(binder.contains("\n    " + data));
    }
}

void TstUserProjectData::rawTextSurvivesTheDeclarationsThatASaveDrops_data()
{
    QTest::addColumn<QByteArray>("documentType");
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("prefix of the root")
        << QByteArray() << QByteArray(" xmlns:n=\"urn:x\"") << QByteArray("<n:a n:b='c'/>");
    QTest::newRow("entity") << QByteArray("<!DOCTYPE TavelinorProject [<!ENTITY who \"me\">]>")
                            << QByteArray() << QByteArray("&who;<a b='&who;'/>");
    QTest::newRow("entity of another file")
        << QByteArray("<!DOCTYPE TavelinorProject [<!ENTITY who SYSTEM \"who.txt\">]>")
        << QByteArray() << QByteArray("&who;");
    QTest::newRow("entity of another document type")
        << QByteArray("<!DOCTYPE TavelinorProject SYSTEM \"who.dtd\">") << QByteArray()
        << QByteArray("&who;<a b='&who;'/>");
}

void TstUserProjectData::rawTextSurvivesTheDeclarationsThatASaveDrops()
{
    QFETCH(QByteArray, documentType);
    QFETCH(QByteArray, attributes);
    QFETCH(QByteArray, content);

    const QByteArray data = "<UserProjectData>" + content + "</UserProjectData>";
    const TestProject project;
    QByteArray binder = binderWith(data);
    const qsizetype root = binder.indexOf("<TavelinorProject");
    QVERIFY(root >= 0);
    binder.insert(root + qstrlen("<TavelinorProject"), attributes);
    binder.insert(root, documentType);
    project.writeFile(u"Novel.tavelx"_s, binder);
    for (int pass = 0; pass < 3; ++pass) {
        const TestModel model = project.open();
        QVERIFY(model);
        QVERIFY(model->save(true));
        QVERIFY(project.readFile(u"Novel.tavelx"_s).contains("\n    " + data));
    }
}

void TstUserProjectData::rawTextWithoutItsExactTagsIsLostOnSaving_data()
{
    QTest::addColumn<QByteArray>("data");

    QTest::newRow("end tag with a blank") << QByteArray("<UserProjectData>x</UserProjectData >");
    QTest::newRow("start tag with an attribute")
        << QByteArray("<UserProjectData a=\"b\">x</UserProjectData>");
    QTest::newRow("closed at once") << QByteArray("<UserProjectData/>");
}

void TstUserProjectData::rawTextWithoutItsExactTagsIsLostOnSaving()
{
    QFETCH(QByteArray, data);

    const TestProject project;
    project.writeFile(u"Novel.tavelx"_s, binderWith(data));
    const TestModel model = project.open();
    QVERIFY(model);
    QCOMPARE(model->userProjectData(), QString());
    QVERIFY(model->save(true));
    QVERIFY(!project.readFile(u"Novel.tavelx"_s).contains("UserProjectData"));
    QCOMPARE(outlineOf(model.get()), QStringList(u"0 Draft"_s));
}

void TstUserProjectData::aBinderWhoseRawTextNeverEndsIsNotRead()
{
    const TestProject project;
    project.writeFile(u"Files/version.txt"_s, "18");
    project.writeFile(u"Novel.tavelx"_s, binderWith("<UserProjectData>x"));
    const auto before = project.files();
    QVERIFY(!project.open());
    QCOMPARE(project.files(), before);
}

void TstUserProjectData::aFallbackHasNoRawText()
{
    const TestProject project;
    project.writeFile(u"Files/binder.autosave"_s,
                      zipOf(u"Novel.tavelx"_s, binderWith("<UserProjectData>x</UserProjectData>")));
    const TestModel model = project.open();
    QVERIFY(model);
    QCOMPARE(model->userProjectData(), QString());
}

TVL_TEST(TstUserProjectData)
#include "tst_userprojectdata.moc"
