#include "ModelChecks.h"
#include "OutlineItems.h"
#include "TestMain.h"
#include "TestProject.h"

#include "TVLBrumbleOpmlParser.h"
#include "TVLOptions.h"
#include "TVLTextDocument.h"

#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QTest>

using namespace Qt::StringLiterals;

/** Items of note-boards. */
class TstNoteBoards : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void elementsBecomeItemsByTheirType_data();
    void elementsBecomeItemsByTheirType();
    void theFirstLineIsTheTitle_data();
    void theFirstLineIsTheTitle();
    void pagesKeepTheirFormats();
    void picturesBecomeItemsOutsideTheDraft();
    void inTheDraftAPictureIsSkippedAndTheNextItemTakesItsRow();
    void itemsLieAtTheRow_data();
    void itemsLieAtTheRow();
    void whatIsNotANoteBoardChangesNothing_data();
    void whatIsNotANoteBoardChangesNothing();
    void hostileContentsDoNoHarm_data();
    void hostileContentsDoNoHarm();
    void anErrorIsToldInTheDebugOutput();
    void withoutAModelThereIsNoProject();
    void aListenerMayRemoveWhatIsMade();
};

namespace {

/** What QDataStream writes, as text. */
template <typename Content>
QByteArray streamed(const Content &content)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << content;
    return bytes.toBase64();
}

QByteArray note(const QByteArray &text, const QString &html = {})
{
    return "<outline type='text' text='" + text + "'>"
        + (html.isEmpty() ? QByteArray() : streamed(html)) + "</outline>";
}

QImage somePicture()
{
    QImage image(3, 2, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

QByteArray picture(const QByteArray &name)
{
    return "<outline type='image' text='" + name + "'>" + streamed(somePicture()) + "</outline>";
}

/** The beginning of a picture that needs 3 GB. */
QByteArray hugePicture()
{
    QByteArray bytes;
    QDataStream(&bytes, QIODevice::WriteOnly) << qint32(1);
    return (bytes + "P6\n32767 32767\n255\n").toBase64();
}

/** The items of a note-board; the text of an item in braces. */
QString itemsOfBoard(const QByteArray &body)
{
    const TestModel model = emptyModel();
    TVLBrumbleOpmlParser parser(model.get());
    if (!parser.parse(QString::fromUtf8(opml(body)), -1, QModelIndex()))
        return u"error: "_s + parser.errorString();
    return itemsText(model.get(), QModelIndex());
}

} // namespace

void TstNoteBoards::elementsBecomeItemsByTheirType_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("items");
    const auto row = [](const char *name, const QByteArray &body, const QString &items) {
        QTest::newRow(name) << body << items;
    };
    row("none", "", u""_s);
    row("note", note("One"), u"One{One||}"_s);
    row("note with a page", note("One", u"<p>A <b>page</b></p>"_s), u"One{A page||}"_s);
    row("note of text that isn't one", "<outline type='text' text='One'>%%%</outline>",
        u"One{One||}"_s);
    row("note without a text", "<outline type='text'>" + streamed(u"words"_s) + "</outline>",
        u""_s);
    row("note with an empty text", note("", u"words"_s),
        TVLProjectModel::trUntitledTitle() + u"{words||}"_s);
    row("group alone", "<outline text='Group'/>", u"Group"_s);
    row("group and more", "<outline text='Groupings of 3'/>", u"Groupings of 3"_s);
    row("group in lower case", "<outline text='group'/>", u""_s);
    row("group elsewhere", "<outline text='A Group'/>", u""_s);
    row("no text and no type", "<outline/>", u""_s);
    row("group of a type", "<outline text='Group' type='group'/>", u""_s);
    row("group of an empty type", "<outline text='Group' type=''/>", u""_s);
    row("another type", "<outline text='x' type='link'>" + streamed(u"words"_s) + "</outline>",
        u""_s);
    row("type in another case", "<outline text='x' type='Text'/>", u""_s);
    row("picture without bytes", "<outline type='image' text='x'/>", u""_s);
    row("picture of other bytes", "<outline type='image' text='x'>AAAA</outline>", u""_s);
    row("in groups",
        "<outline text='Group 1'>" + note("a") + "<outline text='Group 2'>" + note("b")
            + "</outline>" + note("c") + "</outline>" + note("d"),
        u"Group 1(a{a||}, Group 2(b{b||}), c{c||}), d{d||}"_s);
    row("in what is passed over", "<outline text='x'>" + note("a") + "</outline>" + note("b"),
        u"b{b||}"_s);
}

void TstNoteBoards::elementsBecomeItemsByTheirType()
{
    QFETCH(QByteArray, body);
    QTEST(itemsOfBoard(body), "items");
}

void TstNoteBoards::theFirstLineIsTheTitle_data()
{
    QTest::addColumn<bool>("split");
    QTest::addColumn<QByteArray>("note");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("text");
    const QString letters = QString(250, u'x');
    for (const bool split : {true, false}) {
        const auto row = [split](const char *name, const QByteArray &element, const QString &title,
                                 const QString &text) {
            QTest::addRow("%s, %s", name, split ? "split" : "whole")
                << split << element << title << text;
        };
        row("no line end", note("One two"), u"One two"_s, u"One two"_s);
        row("no line end, 250 characters", note(letters.toLatin1()), letters.left(100), letters);
        row("no line end, page of two paragraphs", note("One", u"<p>One</p><p>Two</p>"_s), u"One"_s,
            u"One\nTwo"_s);
        row("line end", note("One&#10;two&#10;three"), u"One"_s,
            split ? u"two\nthree"_s : u"One\ntwo\nthree"_s);
        row("line end, page", note("One&#10;two", u"<p>One</p><p><i>two</i></p><p>x</p>"_s),
            u"One"_s, split ? u"two\nx"_s : u"One\ntwo\nx"_s);
        row("line end behind 250 characters", note(letters.toLatin1() + "&#10;two"),
            split ? letters : letters.left(100), split ? u"two"_s : letters + u"\ntwo"_s);
        row("line end at the beginning", note("&#10;two"), TVLProjectModel::trUntitledTitle(),
            split ? u"two"_s : u"\ntwo"_s);
        row("line end at the end", note("One&#10;"), u"One"_s, split ? u""_s : u"One\n"_s);
        row("line end, page of one paragraph", note("One&#10;two", u"One<br>two"_s), u"One"_s,
            split ? u"\ntwo"_s : u"One\ntwo"_s);
        row("line end, shorter page", note("One&#10;two", u"A"_s), u"One"_s,
            split ? u""_s : u"A"_s);
    }
}

void TstNoteBoards::theFirstLineIsTheTitle()
{
    QFETCH(bool, split);
    QFETCH(QByteArray, note);
    QFETCH(QString, title);
    tvlOptions()->setValue(TVLOptions::SplitFirstLineOfNotes, split);
    const TestModel model = emptyModel();
    TVLBrumbleOpmlParser parser(model.get());
    QVERIFY(parser.parse(QString::fromUtf8(opml(note)), 0, QModelIndex()));
    const QModelIndex item = model->index(0, 0);
    QCOMPARE(model->title(item), title);
    QTEST(model->documentPlainText(item, true), "text");
    tvlOptions()->setValue(TVLOptions::SplitFirstLineOfNotes, true);
}

void TstNoteBoards::pagesKeepTheirFormats()
{
    const TestModel model = emptyModel();
    TVLBrumbleOpmlParser parser(model.get());
    QVERIFY(parser.parse(
        QString::fromUtf8(opml(note("One&#10;two", u"<p>One</p><p>two <b>bold</b></p>"_s))), 0,
        QModelIndex()));
    TVLTextDocument *text = model->referenceText(model->index(0, 0));
    QTextCursor cursor(text);
    cursor.movePosition(QTextCursor::End);
    QCOMPARE(cursor.charFormat().fontWeight(), int(QFont::Bold));
    QVERIFY(text->isDirty());
    model->dereferenceItem(text);
}

void TstNoteBoards::picturesBecomeItemsOutsideTheDraft()
{
    const TestProject project;
    const TestModel model = project.create();
    const QModelIndex research = model->researchFolder();
    const int row = model->rowCount(research);
    TVLBrumbleOpmlParser parser(model.get());
    QVERIFY(parser.parse(
        QString::fromUtf8(opml("<outline text='Group'>" + picture("a/street.in.rain.png")
                               + note("n") + "</outline>")),
        row, research));
    const QModelIndex group = model->index(row, 0, research);
    QCOMPARE(itemsText(model.get(), group), u"street, n{n||}"_s);
    const QModelIndex item = model->index(0, 0, group);
    QCOMPARE(model->type(item), TVL::Image);
    QImage image;
    QVERIFY(image.loadFromData(
        project.readFile(u"Files/Docs/%1.png"_s.arg(model->nodeIdentity(item)))));
    QCOMPARE(image.convertToFormat(QImage::Format_RGB32), somePicture());
}

void TstNoteBoards::inTheDraftAPictureIsSkippedAndTheNextItemTakesItsRow()
{
    const TestModel model = blankModel();
    const QModelIndex folder = model->insertUserFolder(-1, model->draftFolder(), u"f"_s);
    addTree(model.get(), folder, u"x y"_s);
    TVLBrumbleOpmlParser parser(model.get());
    QVERIFY(parser.parse(QString::fromUtf8(opml(note("a") + picture("p") + note("b"))), 1, folder));
    QCOMPARE(itemsText(model.get(), folder), u"x, a{a||}, b{b||}, y"_s);
}

void TstNoteBoards::itemsLieAtTheRow_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("items");
    QTest::newRow("first") << 0 << u"a{a||}, b{b||}, x, y"_s;
    QTest::newRow("between") << 1 << u"x, a{a||}, b{b||}, y"_s;
    QTest::newRow("last") << 2 << u"x, y, a{a||}, b{b||}"_s;
    QTest::newRow("none") << -1 << u"x, y, a{a||}, b{b||}"_s;
    QTest::newRow("one that isn't there") << 3 << u"x, y"_s;
}

void TstNoteBoards::itemsLieAtTheRow()
{
    QFETCH(int, row);
    const TestModel model = emptyModel();
    addTree(model.get(), model->rootIndex(), u"x y"_s);
    TVLBrumbleOpmlParser parser(model.get());
    QCOMPARE(parser.parse(QString::fromUtf8(opml(note("a") + note("b"))), row, QModelIndex()),
             row <= 2);
    QCOMPARE(parser.errorString(), QString());
    QTEST(itemsText(model.get(), QModelIndex()), "items");
}

void TstNoteBoards::whatIsNotANoteBoardChangesNothing_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("error");
    QTest::newRow("another root") << u"<x/>"_s << u""_s;
    QTest::newRow("no body") << u"<opml version='1.0'><outline text='Group'/></opml>"_s
                             << u"Could not find 'body' tag"_s;
    QTest::newRow("empty") << u""_s << u"Premature end of document.Row: 1; Column: 0"_s;
    QTest::newRow("not XML") << u"Words"_s << u"Start tag expected.Row: 1; Column: 1"_s;
    QTest::newRow("cut off") << u"<opml><body>\n<outline text='Group'/>"_s
                             << u"Premature end of document.Row: 2; Column: 23"_s;
}

void TstNoteBoards::whatIsNotANoteBoardChangesNothing()
{
    QFETCH(QString, text);
    const TestModel model = emptyModel();
    TVLBrumbleOpmlParser parser(model.get());
    QVERIFY(!parser.parse(text, -1, QModelIndex()));
    QTEST(parser.errorString(), "error");
    QCOMPARE(model->rowCount(), 0);
    QVERIFY(parser.parse(QString::fromUtf8(opml("")), -1, QModelIndex()));
    QCOMPARE(parser.errorString(), QString());
}

void TstNoteBoards::hostileContentsDoNoHarm_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("items");
    for (const char *tag : {"div", "b", "ul", "ol", "table", "blockquote", "p", "a href='x'"}) {
        const QString page = u'<' + QString::fromLatin1(tag) + u'>';
        QTest::addRow("nested %s", tag) << note("n", page.repeated(1'500) + u"words"_s) << 1;
    }
    QTest::newRow("nested tables")
        << note("n", u"<table><tr><td>"_s.repeated(1'000) + u"words"_s) << 1;
    QTest::newRow("a wide cell") << note("n", u"<table><tr><td colspan='999999999'>a</table>"_s)
                                 << 1;
    QTest::newRow("a file of this machine") << note("n", u"<img src='file:///etc/passwd'>a"_s) << 1;
    QTest::newRow("a picture of any size")
        << "<outline type='image' text='x'>" + hugePicture() + "</outline>" << 0;
    const auto lyingText = [](quint32 length) {
        QByteArray bytes;
        QDataStream(&bytes, QIODevice::WriteOnly) << length << quint16('a');
        return "<outline type='text' text='n'>" + bytes.toBase64() + "</outline>";
    };
    QTest::newRow("a text of any length") << lyingText(0xfffffffc) << 1;
    QTest::newRow("a text of half a character") << lyingText(3) << 1;
}

void TstNoteBoards::hostileContentsDoNoHarm()
{
    QFETCH(QByteArray, body);
    const TestModel model = emptyModel();
    TVLBrumbleOpmlParser parser(model.get());
    QVERIFY(parser.parse(QString::fromUtf8(opml(body)), -1, QModelIndex()));
    QTEST(model->rowCount(), "items");
}

void TstNoteBoards::anErrorIsToldInTheDebugOutput()
{
    const TestModel model = emptyModel();
    TVLBrumbleOpmlParser parser(model.get());
    QTest::ignoreMessage(QtDebugMsg, "\"Start tag expected.Row: 1; Column: 1\"");
    QVERIFY(!parser.parse(u"Words"_s, -1, QModelIndex()));
}

void TstNoteBoards::withoutAModelThereIsNoProject()
{
    TVLBrumbleOpmlParser parser(nullptr);
    QVERIFY(!parser.parse(QString::fromUtf8(opml("")), 0, QModelIndex()));
    QCOMPARE(parser.errorString(), u"No project/parser available"_s);
}

void TstNoteBoards::aListenerMayRemoveWhatIsMade()
{
    for (int turn = 1; turn <= 4; ++turn) {
        for (const bool takesParent : {false, true}) {
            const TestModel model = blankModel();
            const QPersistentModelIndex folder =
                model->insertUserFolder(-1, model->draftFolder(), u"folder"_s);
            int count = 0;
            QObject::connect(model.get(), &QAbstractItemModel::rowsInserted, model.get(),
                             [&](const QModelIndex &parent, int first) {
                                 if (++count == turn)
                                     model->removeIndexFromModel(
                                         takesParent ? QModelIndex(folder)
                                                     : model->index(first, 0, parent));
                             });
            TVLBrumbleOpmlParser parser(model.get());
            QVERIFY(parser.parse(QString::fromUtf8(opml("<outline text='Group'>" + note("a")
                                                        + note("b") + "</outline>" + note("c"))),
                                 0, folder));
            // Nothing comes to lie where it doesn't belong.
            QCOMPARE(model->rowCount(model->draftFolder()), folder.isValid() ? 2 : 1);
            QCOMPARE(model->rowCount(model->rootIndex()), blankModel()->rowCount(QModelIndex()));
        }
    }
}

TVL_TEST(TstNoteBoards)
#include "tst_noteboards.moc"
