<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="he">
<context>
    <name>BrowserGestureHandler</name>
    <message>
        <source>Invalid action</source>
        <translation>פעולה לא חוקית</translation>
    </message>
</context>
<context>
    <name>BrowserTabBar</name>
    <message>
        <source>New tab</source>
        <translation>כרטיסייה חדשה</translation>
    </message>
    <message>
        <source>Close tab</source>
        <translation>סגירת כרטיסייה</translation>
    </message>
    <message>
        <source>Close other tabs</source>
        <translation>סגירת הכרטיסיות האחרות</translation>
    </message>
    <message>
        <source>Close left tabs</source>
        <translation>סגירת הכרטיסיות משמאל</translation>
    </message>
    <message>
        <source>Close right tabs</source>
        <translation>סגירת הכרטיסיות מימין</translation>
    </message>
</context>
<context>
    <name>BrowserTabBarBase</name>
    <message>
        <source>Recover recently closed tabs</source>
        <translation>שחזור כרטיסיות שנסגרו לאחרונה</translation>
    </message>
    <message>
        <source>New tab</source>
        <translation>כרטיסייה חדשה</translation>
    </message>
    <message>
        <source>Tabs</source>
        <translation>כרטיסיות</translation>
    </message>
    <message>
        <source>Close tab %1</source>
        <translation>סגירת הכרטיסייה %1</translation>
    </message>
    <message>
        <source>Scroll tabs left</source>
        <translation>גלילת הכרטיסיות שמאלה</translation>
    </message>
    <message>
        <source>Scroll tabs right</source>
        <translation>גלילת הכרטיסיות ימינה</translation>
    </message>
</context>
<context>
    <name>BrowserTabBarEx</name>
    <message>
        <source>Refresh tab</source>
        <translation>רענון כרטיסייה</translation>
    </message>
    <message>
        <source>Add Fav</source>
        <translation>הוספה למועדפים</translation>
    </message>
    <message>
        <source>Copy link</source>
        <translation>העתקת קישור</translation>
    </message>
    <message>
        <source>Open in Browser</source>
        <translation>פתיחה בדפדפן</translation>
    </message>
    <message>
        <source>Close tab</source>
        <translation>סגירת כרטיסייה</translation>
    </message>
    <message>
        <source>Close other tabs</source>
        <translation>סגירת הכרטיסיות האחרות</translation>
    </message>
    <message>
        <source>Close right tabs</source>
        <translation>סגירת הכרטיסיות מימין</translation>
    </message>
    <message>
        <source>Close left tabs</source>
        <translation>סגירת הכרטיסיות משמאל</translation>
    </message>
</context>
<context>
    <name>KelMouseGesture</name>
    <message>
        <source>Invalid action</source>
        <translation>פעולה לא חוקית</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>אחורה</translation>
    </message>
    <message>
        <source>Forward</source>
        <translation>קדימה</translation>
    </message>
    <message>
        <source>PageUp</source>
        <translation>עמוד למעלה</translation>
    </message>
    <message>
        <source>PageDown</source>
        <translation>עמוד למטה</translation>
    </message>
    <message>
        <source>Close tab</source>
        <translation>סגירת כרטיסייה</translation>
    </message>
    <message>
        <source>New tab</source>
        <translation>כרטיסייה חדשה</translation>
    </message>
    <message>
        <source>Reload</source>
        <translation>טעינה מחדש</translation>
    </message>
    <message>
        <source>Close all</source>
        <translation>סגירת הכול</translation>
    </message>
    <message>
        <source>Previous tab</source>
        <translation>הכרטיסייה הקודמת</translation>
    </message>
    <message>
        <source>Next tab</source>
        <translation>הכרטיסייה הבאה</translation>
    </message>
    <message>
        <source>Recover recently closed tab</source>
        <translation>שחזור הכרטיסייה שנסגרה לאחרונה</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>New tab</source>
        <translation>כרטיסייה חדשה</translation>
    </message>
</context>
</TS>
