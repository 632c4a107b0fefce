#pragma once

#include "TvlExport.h"

#include <QMessageBox>

/**
 * The program's standard questions and failures, and the one place where the library shows a
 * message box: whoever has to say something names what happened and to which thing, and the wording
 * stands here.
 *
 * Each function shows a modal box and returns the button that was pressed; Cancel when the box went
 * away unanswered, with its parent. A function that has no words for an entity returns Cancel and
 * shows nothing. A box runs the event loop, so behind it nothing raw from before is of use. Texts
 * are shown as they stand; a name that looks like markup isn't taken for it.
 *
 * The main text has the short name of the thing: of a project or folder its own name without those
 * above it, of a file the same, and of compile settings and templates, which have a title and no
 * path, the title. The informative text has the whole path.
 *
 * Main thread only; needs a QApplication.
 */
class TVL_EXPORT TVLMessageBox : public QMessageBox
{
    Q_OBJECT

public:
    /** What a message is about. */
    enum Entity : int {
        ProjectEntity = 0,
        DirectoryEntity = 1,
        FileEntity = 2,
        CompileSettingsEntity = 3,
        ExportedCompileSettingsEntity = 4,
        ApplicationSettingsEntity = 5,
        TemplateEntity = 6,
    };
    Q_ENUM(Entity)

    using QMessageBox::QMessageBox;

    /** @name Questions; unless told otherwise, the answer that changes nothing is the default @{ */
    static StandardButton confirmOverwrite(QWidget *parent, Entity entity, const QString &path,
                                           StandardButtons buttons = Yes | No,
                                           StandardButton defaultButton = No);
    static StandardButton confirmRemove(QWidget *parent, Entity entity, const QString &path,
                                        StandardButtons buttons = Yes | No,
                                        StandardButton defaultButton = No);
    /** Knows compile settings and application settings. */
    static StandardButton confirmReset(QWidget *parent, Entity entity,
                                       StandardButtons buttons = Yes | No,
                                       StandardButton defaultButton = No);
    /** Knows projects. */
    static StandardButton entityNeedsUpdating(QWidget *parent, Entity entity, const QString &path,
                                              StandardButtons buttons = Ok | Cancel,
                                              StandardButton defaultButton = Cancel);
    /** @} */

    /** @name Failures @{ */
    /** Knows projects, directories and files. */
    static StandardButton couldNotCreate(QWidget *parent, Entity entity, const QString &path,
                                         StandardButtons buttons = Ok,
                                         StandardButton defaultButton = Ok);
    static StandardButton couldNotOpen(QWidget *parent, Entity entity, const QString &path,
                                       StandardButtons buttons = Ok,
                                       StandardButton defaultButton = Ok);
    /** Knows all but projects. */
    static StandardButton couldNotRead(QWidget *parent, Entity entity, const QString &path,
                                       StandardButtons buttons = Ok,
                                       StandardButton defaultButton = Ok);
    static StandardButton couldNotRemove(QWidget *parent, Entity entity, const QString &path,
                                         StandardButtons buttons = Ok,
                                         StandardButton defaultButton = Ok);
    /** @param error what went wrong, if that is known; it is shown in place of general advice. */
    static StandardButton couldNotOpenForWrite(QWidget *parent, Entity entity, const QString &path,
                                               const QString &error = {},
                                               StandardButtons buttons = Ok,
                                               StandardButton defaultButton = Ok);
    /** @param error as for couldNotOpenForWrite(). */
    static StandardButton couldNotWrite(QWidget *parent, Entity entity, const QString &path,
                                        const QString &title = {}, const QString &error = {},
                                        StandardButtons buttons = Ok,
                                        StandardButton defaultButton = Ok);
    /** Knows projects. */
    static StandardButton incompatible(QWidget *parent, Entity entity, const QString &path,
                                       StandardButtons buttons = Ok,
                                       StandardButton defaultButton = Ok);
    /** The project was saved by a newer version of the program. */
    static StandardButton tavelinorNeedsUpdating(QWidget *parent, const QString &path);
    /**
     * Refuses to save into a project's folder: whether a path names one or leads into one, and says
     * so if it does.
     *
     * @param text what to say beneath the main text; empty for the usual advice
     */
    [[nodiscard]] static bool isProjectContents(const QString &path, QWidget *parent,
                                                const QString &title, const QString &text);
    /** @} */

    /** @name Other boxes @{ */
    /**
     * Shows a box with a check beside its buttons.
     *
     * @param checked whether the check is set, before and after; null for none
     */
    static StandardButton execCheckedMessageBox(QMessageBox *box, const QString &checkText,
                                                bool *checked);
    /**
     * Shows a box of any content; of the texts, those that aren't empty.
     *
     * @param checkText the text of a check as in execCheckedMessageBox(); empty for none
     */
    static StandardButton showMessageBox(QWidget *parent, const QString &title, const QString &text,
                                         const QString &informativeText, QMessageBox::Icon icon,
                                         StandardButtons buttons = Ok,
                                         StandardButton defaultButton = NoButton,
                                         const QString &checkText = {}, bool *checked = nullptr);
    /** @} */
};
