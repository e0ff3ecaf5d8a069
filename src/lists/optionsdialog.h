#pragma once

#include "optionsform.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QLineEdit;
class QListView;
class QPushButton;
class QRadioButton;
class QTabWidget;

namespace pg::lists {

// frmOptions ("Opzioni"): the print program and direct printing on the first tab, the row
// list's font, columns, grouping and payment descriptions on the second, the company's CBI
// code for the XML bank file on the third. Confirming writes the settings; they take effect
// at the next start.
class OptionsDialog : public QDialog
{
    Q_OBJECT

public:
    // columns: the row list's columns with their current visibility.
    explicit OptionsDialog(const QList<ColumnChoice> &columns, QWidget *parent = nullptr);

    OptionsForm &form() { return m_form; }

    // cmdGenera: stores the choices, shows the restart notice and closes.
    void confirm();

    QTabWidget *tabs() const { return m_tabs; }
    QRadioButton *optEditor(int index) const { return index == 0 ? m_optWord : m_optOther; }
    QLineEdit *txtPathEditor() const { return m_path; }
    QPushButton *cmdBrowse() const { return m_browse; }
    QCheckBox *chkAutoPrint() const { return m_autoPrint; }
    QLabel *lblFontName() const { return m_fontName; }
    QLabel *lblFontSize() const { return m_fontSize; }
    QCheckBox *chkSaveOnExit() const { return m_saveOnExit; }
    QListView *lvwColonne() const { return m_columns; }
    QCheckBox *chkRaggruppa() const { return m_raggruppa; }
    QCheckBox *chkModDescr() const { return m_modDescr; }
    QLineEdit *txtDesPag() const { return m_desPag; }
    QLineEdit *txtDesAlt() const { return m_desAlt; }
    QLabel *lblDesPag() const { return m_lblDesPag; }
    QLabel *lblDesAlt() const { return m_lblDesAlt; }
    QLineEdit *txtCuc() const { return m_cuc; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void showState();
    void chooseProgram();
    void chooseFont();

    OptionsForm m_form;
    QTabWidget *m_tabs;
    QRadioButton *m_optWord;
    QRadioButton *m_optOther;
    QLineEdit *m_path;
    QPushButton *m_browse;
    QCheckBox *m_autoPrint;
    QLabel *m_fontName;
    QLabel *m_fontSize;
    QCheckBox *m_saveOnExit;
    QListView *m_columns;
    QCheckBox *m_raggruppa;
    QCheckBox *m_modDescr;
    QLabel *m_lblDesPag;
    QLineEdit *m_desPag;
    QLabel *m_lblDesAlt;
    QLineEdit *m_desAlt;
    QLineEdit *m_cuc;
};

} // namespace pg::lists
