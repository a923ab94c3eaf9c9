<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="he">
<context>
    <name>BrowserWindow</name>
    <message>
        <source>KelTab Browser</source>
        <translation>דפדפן KelTab</translation>
    </message>
    <message>
        <source>%1 - KelTab Browser</source>
        <translation>%1 - דפדפן KelTab</translation>
    </message>
    <message>
        <source>Zoom %1 %</source>
        <translation>זום %1%</translation>
    </message>
    <message>
        <source>New tab (Ctrl+T)</source>
        <translation>כרטיסייה חדשה (Ctrl+T)</translation>
    </message>
    <message>
        <source>New tab</source>
        <translation>כרטיסייה חדשה</translation>
    </message>
    <message>
        <source>No recently closed tab to reopen.</source>
        <translation>אין כרטיסייה שנסגרה לאחרונה לפתיחה מחדש.</translation>
    </message>
    <message>
        <source>Downloads: this demo downloads nothing but tab icons.</source>
        <translation>הורדות: ההדגמה הזו מורידה רק סמלי כרטיסיות.</translation>
    </message>
    <message>
        <source>Developer tools belong to a real browser engine, which this demo does not embed.</source>
        <translation>כלי מפתחים שייכים למנוע דפדפן אמיתי, שההדגמה הזו אינה מטמיעה.</translation>
    </message>
    <message numerus="yes">
        <source>History: %n tab(s) closed in this session.</source>
        <translation>
            <numerusform>היסטוריה: כרטיסייה %n נסגרה בהפעלה זו.</numerusform>
            <numerusform>היסטוריה: %n כרטיסיות נסגרו בהפעלה זו.</numerusform>
        </translation>
    </message>
    <message>
        <source>Recently closed tabs forgotten.</source>
        <translation>הכרטיסיות שנסגרו לאחרונה נשכחו.</translation>
    </message>
    <message>
        <source>The home tab stays open.</source>
        <translation>כרטיסיית הבית נשארת פתוחה.</translation>
    </message>
    <message>
        <source>Only web pages can be bookmarked.</source>
        <translation>רק דפי אינטרנט ניתנים לסימון.</translation>
    </message>
    <message>
        <source>Bookmarked %1</source>
        <translation>%1 נוסף לסימניות</translation>
    </message>
    <message>
        <source>Copied %1</source>
        <translation>%1 הועתק</translation>
    </message>
    <message>
        <source>Only http and https pages open in the system browser.</source>
        <translation>רק דפי http ו-https נפתחים בדפדפן המערכת.</translation>
    </message>
    <message>
        <source>No system browser could open %1</source>
        <translation>אף דפדפן מערכת לא הצליח לפתוח את %1</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is not on this page.</source>
        <translation>&quot;%1&quot; לא נמצא בדף זה.</translation>
    </message>
</context>
<context>
    <name>HomePage</name>
    <message>
        <source>KelTab Browser</source>
        <translation>דפדפן KelTab</translation>
    </message>
    <message>
        <source>Type an address and press Enter</source>
        <translation>הקלידו כתובת והקישו Enter</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>כתובת</translation>
    </message>
    <message>
        <source>Welcome</source>
        <translation>ברוכים הבאים</translation>
    </message>
    <message>
        <source>Host&apos;s guide</source>
        <translation>מדריך למארח</translation>
    </message>
    <message>
        <source>Signals</source>
        <translation>אותות</translation>
    </message>
    <message>
        <source>Notes</source>
        <translation>הערות</translation>
    </message>
    <message>
        <source>qt.io</source>
        <translation>qt.io</translation>
    </message>
</context>
<context>
    <name>NavigationBar</name>
    <message>
        <source>Back</source>
        <translation>אחורה</translation>
    </message>
    <message>
        <source>Back (Alt+Left)</source>
        <translation>אחורה (Alt+שמאלה)</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>קדימה</translation>
    </message>
    <message>
        <source>Forward (Alt+Right)</source>
        <translation>קדימה (Alt+ימינה)</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>טעינה מחדש</translation>
    </message>
    <message>
        <source>Reload (F5)</source>
        <translation>טעינה מחדש (F5)</translation>
    </message>
    <message>
        <source>Home</source>
        <translation>בית</translation>
    </message>
    <message>
        <source>Bookmark this page</source>
        <translation>הוספת הדף לסימניות</translation>
    </message>
    <message>
        <source>Bookmark this page (Ctrl+D)</source>
        <translation>הוספת הדף לסימניות (Ctrl+D)</translation>
    </message>
    <message>
        <source>Type an address</source>
        <translation>הקלידו כתובת</translation>
    </message>
    <message>
        <source>Address</source>
        <translation>כתובת</translation>
    </message>
    <message>
        <source>Find in page</source>
        <translation>חיפוש בדף</translation>
    </message>
</context>
<context>
    <name>PluginPage</name>
    <message>
        <source>Notes</source>
        <translation>הערות</translation>
    </message>
    <message>
        <source>A plug-in page: the tab holds a plug-in code instead of an address.</source>
        <translation>דף תוסף: הכרטיסייה מחזיקה קוד תוסף במקום כתובת.</translation>
    </message>
    <message>
        <source>Write something down...</source>
        <translation>כתבו משהו...</translation>
    </message>
</context>
<context>
    <name>TabRecordFactory</name>
    <message>
        <source>Home</source>
        <translation>בית</translation>
    </message>
    <message>
        <source>Notes</source>
        <translation>הערות</translation>
    </message>
</context>
<context>
    <name>TextBrowserPage</name>
    <message>
        <source>Welcome</source>
        <translation>ברוכים הבאים</translation>
    </message>
    <message>
        <source>A host&apos;s guide</source>
        <translation>מדריך למארח</translation>
    </message>
    <message>
        <source>Signals a host answers</source>
        <translation>אותות שהמארח עונה להם</translation>
    </message>
    <message>
        <source>New tab</source>
        <translation>כרטיסייה חדשה</translation>
    </message>
    <message>
        <source>&lt;h2&gt;Cannot open this address&lt;/h2&gt;&lt;p&gt;The demo shows local pages and http or https pages only.&lt;/p&gt;</source>
        <translation>&lt;h2&gt;לא ניתן לפתוח כתובת זו&lt;/h2&gt;&lt;p&gt;ההדגמה מציגה רק דפים מקומיים ודפי http או https.&lt;/p&gt;</translation>
    </message>
    <message>
        <source>Cannot open page</source>
        <translation>לא ניתן לפתוח את הדף</translation>
    </message>
    <message>
        <source>Loading %1 ...</source>
        <translation>טוען את %1...</translation>
    </message>
    <message>
        <source>&lt;h2&gt;Cannot load this page&lt;/h2&gt;&lt;p&gt;%1&lt;/p&gt;</source>
        <translation>&lt;h2&gt;לא ניתן לטעון דף זה&lt;/h2&gt;&lt;p&gt;%1&lt;/p&gt;</translation>
    </message>
    <message>
        <source>Cannot load page</source>
        <translation>לא ניתן לטעון את הדף</translation>
    </message>
    <message>
        <source>This address sends %1, which the demo does not show.</source>
        <translation>כתובת זו שולחת %1, שההדגמה אינה מציגה.</translation>
    </message>
</context>
</TS>
