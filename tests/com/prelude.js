// The checks every JScript suite shares. The Windows tests put this file in
// front of each suite (Wine's cscript runs no .wsf jobs that could include
// it). One line per check ("ok ..." or "not ok ..."), then the sentinel
// line; the exit code is the number of failed checks.

var failures = 0;

function report(passed, name, detail) {
    if (passed) {
        WScript.Echo("ok " + name);
    } else {
        failures++;
        WScript.Echo("not ok " + name + (detail === undefined ? "" : " -- " + detail));
    }
}

// Runs `body`, which answers true or what it saw instead.
function check(name, body) {
    try {
        var outcome = body();
        if (outcome === true) {
            report(true, name);
        } else {
            report(false, name, String(outcome));
        }
    } catch (e) {
        report(false, name, "error " + e.number + " " + e.description);
    }
}

// Runs `body`, expecting it to raise; hands the error to `inspect`.
function checkRaises(name, body, inspect) {
    var raised = null;
    try {
        body();
    } catch (e) {
        raised = e;
    }
    if (raised === null) {
        report(false, name, "no error raised");
        return;
    }
    var outcome = inspect(raised);
    report(outcome === true, name, outcome === true ? undefined : String(outcome));
}

function hostNumber(e) {
    // JScript shows an automation status as a negative number; the host
    // error n arrives as 0x800A0000 + n.
    return (e.number < 0 ? e.number + 0x100000000 : e.number) - 0x800A0000;
}

// The summary line and the sentinel; the exit code is the failures.
function finish(title) {
    WScript.Echo("# " + title + ": " + failures + " failed");
    WScript.Echo("END-OF-SUITE");
    WScript.Quit(failures);
}

