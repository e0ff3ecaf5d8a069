#pragma once

#include <QDialog>

#include <functional>

class QLineEdit;
class QPushButton;
class QToolButton;
class QVBoxLayout;

namespace pg::bankfile {

// What the dialogs of the bank files share: the data of the distinta on top, what a form
// shows more in the middle, its options, the name of the file to write, which the clerk may
// type or build by picking a folder, and the two buttons. Confirming sets the result marker
// to "GO" and keeps the name as it stands; cancelling leaves the marker empty.
class BankFileDialog : public QDialog
{
    Q_OBJECT

public:
    // The folder picker, opened on a folder: the chosen folder, or empty when it was
    // cancelled.
    using FolderPicker =
        std::function<QString(QWidget *parent, const QString &title, const QString &start)>;

    // "GO" once confirmed; empty otherwise.
    const QString &resultMarker() const { return m_marker; }

    // The program's folder picker (in Italian, as its other windows) unless replaced.
    void setFolderPicker(FolderPicker picker) { m_picker = std::move(picker); }

protected:
    explicit BankFileDialog(QWidget *parent);

    // Where a form puts its data, what it shows more (the part that grows), and its options.
    QVBoxLayout *dataLayout() const { return m_data; }
    QVBoxLayout *contentLayout() const { return m_content; }
    QVBoxLayout *optionsLayout() const { return m_options; }

    // The name of the file as typed, and the bare name that a picked folder is followed by.
    void setFileName(const QString &name);
    QString fileName() const;
    void setFileTag(const QString &tag) { m_fileTag = tag; }

    // The file name and the buttons last when the clerk moves with the tab key, after the
    // data and options a form added (called at the end of the form's construction).
    void moveFileAndButtonsLast();

    // Called on confirmation, after the marker is set and before the dialog closes.
    virtual void confirmed() {}

    // A line of data the dialog shows and the clerk cannot change.
    static QLineEdit *shownOnly(const QString &name, QWidget *parent);
    // The folder of the proposed name, or the nearest folder above it that exists.
    QString proposedFolder() const;

private:
    void cmdConferma_Click();
    void cmdBrowse_Click();

    QVBoxLayout *m_data;
    QVBoxLayout *m_content;
    QVBoxLayout *m_options;
    QLineEdit *m_txtFileName;
    QToolButton *m_cmdBrowse;
    QPushButton *m_cmdConferma;
    QPushButton *m_cmdAnnulla;
    QString m_fileTag;
    QString m_marker;
    FolderPicker m_picker;
};

} // namespace pg::bankfile
