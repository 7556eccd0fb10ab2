<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>CommentDialog</name>
    <message>
        <source>Comment</source>
        <translation>Comment</translation>
    </message>
    <message>
        <source>Frequency:</source>
        <translation>Frequency:</translation>
    </message>
    <message>
        <source>Level:</source>
        <translation>Level:</translation>
    </message>
    <message>
        <source>Bandwidth:</source>
        <translation>Bandwidth:</translation>
    </message>
    <message>
        <source>Time:</source>
        <translation>Time:</translation>
    </message>
    <message>
        <source>Azimuth:</source>
        <translation>Azimuth:</translation>
    </message>
    <message>
        <source>Comment:</source>
        <translation>&amp;Comment:</translation>
    </message>
    <message>
        <source>comment</source>
        <translation>comment</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>&amp;Save</translation>
    </message>
    <message>
        <source>No Comment</source>
        <translation>&amp;No Comment</translation>
    </message>
</context>
<context>
    <name>CommentDialogImpl</name>
    <message>
        <source>Warning</source>
        <translation>Warning</translation>
    </message>
    <message>
        <source>You have enterd a comment. Would you like to save it?</source>
        <translation>You have entered a comment. Would you like to save it?</translation>
    </message>
    <message>
        <source>The report could not be saved: %1
Try again, or press Escape to close without a report.</source>
        <translation>The report could not be saved: %1
Try again, or press Escape to close without a report.</translation>
    </message>
</context>
<context>
    <name>VCReporting</name>
    <message>
        <source>To Report (Shift+F10)</source>
        <translation>To Report (Shift+F10)</translation>
    </message>
</context>
</TS>
