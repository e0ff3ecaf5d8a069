#pragma once

#include "distintaeditor.h"
#include "distintaview.h"
#include "mainwindowhooks.h"
#include "mainwindowload.h"

#include <QMainWindow>

#include <array>
#include <memory>

class QCheckBox;
class QFrame;
class QGridLayout;
class QLabel;
class QLineEdit;
class QMenu;
class QToolButton;

namespace pg::ui {
class CodeLineEdit;
class MaskedDateEdit;
} // namespace pg::ui

namespace pg::editor {

class RowListView;

// frmMain ("Pagamenti"): the editor of one distinta at a time. At the top the management
// buttons and the program's commands, then the distinta header (company bank, dates,
// currency, state, total), in the middle the area of the row list, around it the row and
// print commands, the printer in use and the status bar. The rules live in DistintaEditor;
// the window shows what it decides and forwards the clerk's keys and clicks.
class MainWindow : public QMainWindow, public DistintaView
{
    Q_OBJECT

public:
    explicit MainWindow(MainWindowLoad &load, QWidget *parent = nullptr);
    ~MainWindow() override;

    // Form_Load: the load step with the window's handle, then the window's own set-up.
    MainWindowLoad::Outcome Form_Load();
    // Form_Unload: the unload step (once).
    void Form_Unload();

    MainWindowHooks &hooks() { return m_hooks; }
    // Null until the load step has set up the distinta component.
    DistintaEditor *editor() const { return m_editor.get(); }

    // The commands of the window, as its buttons run them.
    void btnGestione_Click(int index);
    void cmdAggiungi_Click();
    void cmdCancRiga_Click();
    void cmdZoom_Click();
    void cmdZoomCli_Click();
    void cmdStSolle_Click();
    void cmdCreaFile_Click();
    void chkDatiBanca_Click();
    void cmdVerifica_Click();
    void cmdListaCampi_Click();
    void cmdScelta_Click();
    void cmdOptions_Click();
    void cmbHelp_Click();
    // The clerk's manual that cmbHelp opens.
    static QString manualPath();
    void cmdInfo_Click();

    // Brings the window to the front (a second start of the program asks for it).
    void raiseFromOtherStart();
    // The printer in use, as the frame "Stampante selezionata" shows it.
    void showPrinter();

    // Refills the row list from the distinta's rows.
    void LoadRows() override;
    // Recomputes the header's total and number of dispositions from the rows.
    void CalcolaTotali();
    // lvwSelectRow: selects or deselects every line of the row list.
    void lvwSelectRow(bool selected);

    // The controls, for the window's users and tests.
    QToolButton *btnGestione(int index) const { return m_btnGestione.at(index); }
    QLineEdit *txtTestata(int index) const;
    ui::MaskedDateEdit *mskData() const { return m_mskData; }
    ui::MaskedDateEdit *mskDataValuta() const { return m_mskDataValuta; }
    QLineEdit *txtdesTipo() const;
    QLineEdit *txtdesStato() const;
    QLabel *lblTotale() const { return m_lblTotale; }
    QLabel *lblPrinter() const { return m_lblPrinter; }
    QToolButton *command(const QString &objectName) const;
    QMenu *mnuLista() const { return m_mnuLista; }
    QFrame *listArea() const { return m_listArea; }
    RowListView *lvwScadenze() const { return m_list; }

    // DistintaView
    void setManagementButton(int index, bool enabled) override;
    void BindControls() override;
    void PulisciMaschera() override;
    void setAggiungiEnabled(bool enabled) override;
    void showTotals() override;
    QString dateBoxText(DateBox box) const override;
    void setDateBoxText(DateBox box, const QString &text) override;
    void focusDateBox(DateBox box, bool selectText) override;
    void focusHeaderField(int index) override;
    QStringList selectedRowKeys() const override;
    void deselectRows() override;
    bool hasListColumn(const QString &header) const override;
    int listRowCount() const override;
    QString currentRowKey() const override;
    std::optional<SelectionResult> showSelectionDialog() override;
    void addSelectedDueItems(distinta::Distinta &distinta) override;
    std::optional<QString> chooseDistinta() override;
    QString lookupBanksAndAgencies() override;
    void showDueItemDetail(const archives::ErpRecord &dueItem) override;
    void showAccountDetail(const QString &code, const QString &caption,
                           const QString &frame) override;

protected:
    void closeEvent(QCloseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void buildHeader(QWidget *parent, QGridLayout *grid);
    QToolButton *makeCommand(const QString &name, const QString &icon, const QString &caption,
                             const QString &toolTip);
    // Runs the checks of the field being edited, as leaving it would; false when it keeps
    // the focus.
    bool leaveCurrentField();
    bool ready() const { return m_editor != nullptr; }

    MainWindowLoad *m_load;
    std::unique_ptr<DistintaEditor> m_editor;
    MainWindowHooks m_hooks;
    bool m_unloaded = false;

    std::array<QToolButton *, DistintaEditor::ButtonCount> m_btnGestione{};
    std::array<ui::CodeLineEdit *, 16> m_txtTestata{};
    ui::MaskedDateEdit *m_mskData = nullptr;
    ui::MaskedDateEdit *m_mskDataValuta = nullptr;
    ui::CodeLineEdit *m_desTipo = nullptr;
    ui::CodeLineEdit *m_desStato = nullptr;
    QLabel *m_lblTotale = nullptr;
    QLabel *m_lblPrinter = nullptr;
    bool m_printerAfterFirstPaint = false;
    QLabel *m_picture1 = nullptr;
    QFrame *m_listArea = nullptr;
    RowListView *m_list = nullptr;
    QMenu *m_mnuLista = nullptr;
    QCheckBox *m_chkModello = nullptr;
    QLabel *m_company = nullptr;
};

} // namespace pg::editor
