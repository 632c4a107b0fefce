#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

class QTextDocument;
class TestProject;
class TVLBinderProject;

/** The folder of a project's notes and its files, below the project's folder. */
extern const QString NotesFolder;
extern const QString NotesIndex;
[[nodiscard]] QString noteFile(int id);

[[nodiscard]] QString noteTitle(const QTextDocument *note);
/** Replaces a note's text, as an edit does. */
void setNoteText(QTextDocument *note, const QString &text);

/** A list of notes with its documents. */
class Notes
{
public:
    Notes() = default;
    ~Notes();
    Q_DISABLE_COPY_MOVE(Notes)

    QTextDocument *add(int id, const QString &title, const QString &text);
    bool write(const TestProject &project, QStringList *errors = nullptr) const;
    bool read(const TestProject &project, QStringList *errors = nullptr,
              const TVLBinderProject *model = nullptr);
    [[nodiscard]] QTextDocument *at(int place) const { return mList.at(place).second; }
    /** `id title: text` of each. */
    [[nodiscard]] QStringList lines() const;

    QList<QPair<int, QTextDocument *>> mList;
};

/** The lines of what a fresh read finds, which has to go well. */
[[nodiscard]] QStringList noteLinesIn(const TestProject &project);

/** Puts the notes 10, 11 and 12 into a project, named and filled by their numbers. */
void writeThreeNotes(const TestProject &project);
/** The lines of these. */
extern const QStringList ThreeNotes;

[[nodiscard]] QByteArray noteIndexXml(const QByteArray &notes);
[[nodiscard]] QByteArray noteXml(int id, const QByteArray &children = {});

/** Rows of a file's content, each of which is no note. */
void addDamagedNoteRows();
/** Has the next message of this text be no surprise. */
void expectLog(const QString &text);
