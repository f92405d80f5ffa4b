#pragma once

#include <QObject>
#include <QString>

class QBoxLayout;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QWidget;
class UXCPanelMessages;

// The standing of the generated map beside its count: out of date once its
// inputs change, a note when it was cut short, and the protected factory slot.
class UXCMapStatus : public QObject {
    Q_OBJECT

public:
    struct PanelParts {
        QWidget* panel;
        QLineEdit* count;             // the shown count of the generated map
        QBoxLayout* countRow;         // gets the note
        QComboBox* selector;          // the camera's map slots
        QPushButton* uploadGenerated; // the two uploads say why the factory slot refuses them
        QPushButton* uploadLocal;
    };
    UXCMapStatus(const PanelParts& parts, UXCPanelMessages& messages);

    bool isStale() const { return m_stale; }
    // A shown map becomes stale once; nothing shown stays fresh.
    void setStale(bool stale);
    // Fresh, without note, with the hints of the selected slot.
    void clear();
    void noteGenerated(unsigned int count, unsigned int maxMapSize, unsigned int flagged);
    // True when the map is fresh or the user uploads it anyway.
    bool confirmStaleUpload() const;
    // Register cameras: the factory slot refuses with the messages of an upload.
    bool refuseFactorySlot(bool registerMode, const QString& title, const QString& failedLine) const;

private:
    void showNote(const QString& text);
    bool isFactorySlotSelected() const;
    void updateSlotHints();

    PanelParts m_parts;
    UXCPanelMessages& m_messages;
    QLabel* m_note; // owned by the panel
    bool m_stale = false;
};
