#pragma once

#include "TestModel.h"

#include <QTemporaryDir>

#include <memory>

using namespace Qt::StringLiterals;

/** Access to what a project model keeps to itself. */
class TVLProjectModelTestAccess
{
public:
    static void markModified(TVLProjectModel *model, bool set = true)
    {
        model->markProjectAsModified(set);
    }
    /** As after a save, without one. */
    static void setSaved(TVLProjectModel *model);
    static const TVLSearchIndex &searchIndex(const TVLProjectModel *model)
    {
        return *model->searchIndex();
    }
    static TVLProjectNotes &projectNotes(TVLProjectModel *model);
};

/** A folder for one project, gone with the object. */
class TestProject
{
public:
    /** Names the project, without making anything. */
    explicit TestProject(const QString &name = u"Novel"_s);

    /** The project's folder, `<name>.tavel`. */
    [[nodiscard]] QString path() const { return mPath; }
    /** A path below the project's folder. */
    [[nodiscard]] QString path(const QString &relativePath) const
    {
        return mPath + u'/' + relativePath;
    }
    /** The folder that holds the project's folder. */
    [[nodiscard]] QString enclosingPath() const { return mDirectory.path(); }
    /** The binder under its default name. */
    [[nodiscard]] QString binderPath() const;

    /** Makes the project's folder and writes a file in it, with the folders that it needs. */
    void writeFile(const QString &relativePath, const QByteArray &content) const;
    [[nodiscard]] QByteArray readFile(const QString &relativePath) const;

    /** A blank project, saved and open. */
    [[nodiscard]] TestModel create() const;
    /** Opens the project; null when it can't be. */
    [[nodiscard]] TestModel open() const;

    /** Every file below the project's folder with its content, for comparing before and after. */
    [[nodiscard]] QMap<QString, QByteArray> files() const;

private:
    QTemporaryDir mDirectory;
    QString mPath;
};

/** The smallest binder of grammar 1.5, holding the given XML inside `Binder` and behind it. */
[[nodiscard]] QByteArray binderXml(const QByteArray &items, const QByteArray &sections = {},
                                   const QByteArray &version = "1.5");
