#pragma once

#include <QString>

#include <memory>

class TVLProjectGuard;
class TVLProjectModel;
struct BinderFiles;

/** A project that is open to be changed, and locked as long as this object lives. */
class WritableProject
{
public:
    /**
     * Opens a project and locks it. Null, with the project as it was and a line in @p error, when
     * there is none, when it can't be read or locked, and when it is locked or guarded already. Two
     * locks are in nobody's way and give place: that of a run of this tool that was killed, and
     * that which a copied project has brought along from where it was copied.
     *
     * A project whose binder is damaged isn't opened, though there may be a copy of the binder: a
     * save would write over what is left of it.
     */
    [[nodiscard]] static std::unique_ptr<WritableProject> open(const QString &path, QString *error);
    ~WritableProject();
    Q_DISABLE_COPY_MOVE(WritableProject)

    [[nodiscard]] TVLProjectModel *model() const { return mModel.get(); }
    [[nodiscard]] QString path() const;

    /** Whether a save keeps all that the binder holds; if not, @p error gets a line. */
    [[nodiscard]] bool canSave(QString *error) const;
    /** Saves the project, and then what later searches and checks go by; on failure, which is also
     * told in a box, @p error gets a line. */
    [[nodiscard]] bool save(QString *error);

private:
    explicit WritableProject(const BinderFiles &files);

    [[nodiscard]] QString lock();
    [[nodiscard]] QString read(const QString &path, const QString &binderPath);

    QString mPath;
    std::unique_ptr<TVLProjectGuard> mGuard; ///< Keeps others out; the lock tells them who it is.
    bool mIsLocked = false;
    std::unique_ptr<TVLProjectModel> mModel;
};
