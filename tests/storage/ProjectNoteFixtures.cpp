#include "ProjectNoteFixtures.h"

#include "TVLProjectFolderFormat.h"
#include "TestProject.h"

#include <QTest>
#include <QTextCursor>
#include <QTextDocument>

using namespace Qt::StringLiterals;

const QString NotesFolder = u"Files/ProjectNotes"_s;
const QString NotesIndex = u"Files/ProjectNotes/index.xml"_s;

const QStringList ThreeNotes = {u"10 Title 10: Text 10"_s, u"11 Title 11: Text 11"_s,
                                u"12 Title 12: Text 12"_s};

QString noteFile(int id)
{
    return u"Files/ProjectNotes/Note-%1.rtf"_s.arg(id);
}

QString noteTitle(const QTextDocument *note)
{
    return note->metaInformation(QTextDocument::DocumentTitle);
}

void setNoteText(QTextDocument *note, const QString &text)
{
    QTextCursor cursor(note);
    cursor.select(QTextCursor::Document);
    cursor.insertText(text);
}

Notes::~Notes()
{
    for (const auto &[id, note] : std::as_const(mList))
        delete note;
}

QTextDocument *Notes::add(int id, const QString &title, const QString &text)
{
    auto *note = new QTextDocument;
    note->setMetaInformation(QTextDocument::DocumentTitle, title);
    setNoteText(note, text);
    mList.append({id, note});
    return note;
}

bool Notes::write(const TestProject &project, QStringList *errors) const
{
    return TVLProjectFolderFormat::writeProjectNotes(project.path(), mList, errors);
}

bool Notes::read(const TestProject &project, QStringList *errors, const TVLBinderProject *model)
{
    return TVLProjectFolderFormat::readProjectNotes(project.path(), &mList, model, errors);
}

QStringList Notes::lines() const
{
    QStringList lines;
    for (const auto &[id, note] : mList)
        lines.append(u"%1 %2: %3"_s.arg(QString::number(id), noteTitle(note), note->toPlainText()));
    return lines;
}

QStringList noteLinesIn(const TestProject &project)
{
    Notes notes;
    QStringList errors;
    if (!notes.read(project, &errors) || !errors.isEmpty())
        qFatal("the notes can't be read: %s", qPrintable(errors.join(u'\n')));
    return notes.lines();
}

void writeThreeNotes(const TestProject &project)
{
    Notes notes;
    for (int id = 10; id < 13; ++id)
        notes.add(id, u"Title %1"_s.arg(id), u"Text %1"_s.arg(id));
    if (!notes.write(project))
        qFatal("could not write notes");
}

QByteArray noteIndexXml(const QByteArray &notes)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<ProjectNotes Version=\"1.0\">" + notes
        + "</ProjectNotes>\n";
}

QByteArray noteXml(int id, const QByteArray &children)
{
    return "<Note ID=\"" + QByteArray::number(id) + "\">" + children + "</Note>";
}

void addDamagedNoteRows()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("nothing but a line end") << QByteArray("\n");
    QTest::newRow("no rich text") << QByteArray("Once upon a time");
    QTest::newRow("cut off") << QByteArray("{\\rtf1\\ansi Once upon");
    QTest::newRow("text behind the end") << QByteArray("{\\rtf1\\ansi Once upon} a time");
    QTest::newRow("a web page") << QByteArray("<html>Once</html>");
}

void expectLog(const QString &text)
{
    QTest::ignoreMessage(QtDebugMsg, qPrintable(text));
}
