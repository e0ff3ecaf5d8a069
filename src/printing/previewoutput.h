#pragma once

#include "printoutput.h"

#include "printercatalog.h"

#include <optional>

class QWidget;

namespace pg::printing {

// The document shown in the print preview window, from which the clerk prints it on the
// printer in use (or another, through the printer dialog of the preview). It went out only
// when the clerk printed it; closing the preview prints nothing.
class PreviewOutput : public PrintOutput
{
public:
    PreviewOutput(std::optional<editor::PrinterInfo> printer, QWidget *parent);
    bool deliver(const PrintDocument &document, const QString &title) override;

private:
    std::optional<editor::PrinterInfo> m_printer;
    QWidget *m_parent;
};

} // namespace pg::printing
