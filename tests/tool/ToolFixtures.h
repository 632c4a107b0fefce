#pragma once

#include "TestProject.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QMap>
#include <QProcessEnvironment>
#include <QStringList>

#include <functional>

using namespace Qt::StringLiterals;

/** The files of a project that hashes and texts to be searched are kept in. */
const QString HashesFile = u"Files/Docs/docs.checksum"_s;
const QString IndexFile = u"Files/search.indexes"_s;

/** What a program that ran to its end has left. */
struct ProgramResult
{
    bool crashed = true;
    int status = -1;
    QByteArray output; ///< Standard output.
    QByteArray errors; ///< Standard error.

    /** Standard error's lines, without the empty one behind the last line break. */
    [[nodiscard]] QList<QByteArray> errorLines() const;
    /** Standard output as JSON; a null document when it isn't JSON alone. */
    [[nodiscard]] QJsonDocument json() const;
};

/** Where and how a program is run. */
struct ProgramPlace
{
    QString workingDirectory;
    QString outputFile; ///< Takes standard output instead of the result.
    QString errorFile; ///< Takes standard error instead of the result.
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
};

[[nodiscard]] ProgramResult runProgram(const QString &program, const QStringList &arguments,
                                       const ProgramPlace &place = {});
/** Runs the tool. */
[[nodiscard]] ProgramResult runTool(const QStringList &arguments, const ProgramPlace &place = {});

/**
 * Everything below a folder: each file with its content and its time of modification, each folder
 * with nothing.
 */
[[nodiscard]] QMap<QString, QByteArray> everythingBelow(const QString &path);

/** Writes a file anywhere, with the folders that it needs. */
void writeFileAt(const QString &path, const QByteArray &content);

/** The uuid that item() gives an item. */
[[nodiscard]] QByteArray uuidOf(int id);

/** What an item of a test's binder is like where it isn't ordinary. */
struct ItemXml
{
    QByteArray attributes; ///< In place of the ordinary ones, the type excepted.
    QByteArray metaData;
    QByteArray children;
    QByteArray elements = {}; ///< What else it is made of.
};

/** A binder's item with id, uuid and dates, all made from its id. */
[[nodiscard]] QByteArray item(int id, const QByteArray &type, const QByteArray &title,
                              const ItemXml &xml = {});
/** The attributes that item() gives an item. */
[[nodiscard]] QByteArray itemAttributes(int id);

/** The three system folders, with items in the Draft. */
[[nodiscard]] QByteArray systemFolders(const QByteArray &draftItems);

/** Labels 1 "Chapter" and 7 "Idea", status items 2 "First Draft" and 3 "Done". */
[[nodiscard]] QByteArray labelAndStatusSections();

/** The items of a sound project's Draft: a folder with two texts, 3 to 5. */
[[nodiscard]] QByteArray soundDraftItems();

/** Collections, one of them with these ids. */
[[nodiscard]] QByteArray collectionsSection(const QByteArray &memberIds);

/** The binder of a sound project. */
[[nodiscard]] QByteArray soundBinder();

/**
 * The binder of the same project with something in every part that a binder can have, and items
 * that make use of all of it. Templates 6 and 7 and a picture 8 have joined the items.
 */
[[nodiscard]] QByteArray fullBinder();

/** Writes a project with nothing wrong: binder, version file, texts, snapshots, checksums. */
void writeSoundProject(const TestProject &project);

/** Writes a binder into a project that has nothing yet but that and its format version. */
void writeProject(const TestProject &project, const QByteArray &binder,
                  const QByteArray &formatVersion = "18");

/** Records the hashes of all of a project's documents as they are. */
void recordHashes(const TestProject &project);

/** Zips the binder as it stands into one of the copies that an opening falls back on. */
void zipBinder(const TestProject &project, const QString &zipName);

/** Something that is done to a project. */
using ProjectChange = std::function<void(const TestProject &project)>;

[[nodiscard]] ProjectChange writing(const QString &relativePath, const QByteArray &content);
[[nodiscard]] ProjectChange removing(const QString &relativePath);
/** Takes away the second half of a file. */
[[nodiscard]] ProjectChange cuttingOff(const QString &relativePath);

/** What `tavel cat` says of an item. */
[[nodiscard]] QByteArray catOf(const TestProject &project, const QString &item);
