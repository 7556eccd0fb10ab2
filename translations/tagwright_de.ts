<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de">
<context>
    <name>CommentDialog</name>
    <message>
        <source>Comment</source>
        <translation>Kommentar</translation>
    </message>
    <message>
        <source>Frequency:</source>
        <translation>Frequenz:</translation>
    </message>
    <message>
        <source>Level:</source>
        <translation>Pegel:</translation>
    </message>
    <message>
        <source>Bandwidth:</source>
        <translation>Bandbreite:</translation>
    </message>
    <message>
        <source>Time:</source>
        <translation>Zeit:</translation>
    </message>
    <message>
        <source>Azimuth:</source>
        <translation>Azimut:</translation>
    </message>
    <message>
        <source>Comment:</source>
        <translation>&amp;Kommentar:</translation>
    </message>
    <message>
        <source>comment</source>
        <translation>Kommentar</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>No Comment</source>
        <translation>&amp;Ohne Kommentar</translation>
    </message>
</context>
<context>
    <name>CommentDialogImpl</name>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>You have enterd a comment. Would you like to save it?</source>
        <translation>Sie haben einen Kommentar eingegeben. Möchten Sie ihn speichern?</translation>
    </message>
    <message>
        <source>The report could not be saved: %1
Try again, or press Escape to close without a report.</source>
        <translation>Der Bericht konnte nicht gespeichert werden: %1
Versuchen Sie es noch einmal, oder schließen Sie mit Esc ohne Bericht.</translation>
    </message>
</context>
<context>
    <name>VCReporting</name>
    <message>
        <source>To Report (Shift+F10)</source>
        <translation>Bericht erstellen (Umschalt+F10)</translation>
    </message>
</context>
</TS>
