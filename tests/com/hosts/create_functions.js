// Creates Quillbank.Functions by its ProgID and prints one line: "created"
// with EmptyGUID, or "not created" with the error number. For the
// registration checks of scripts/test-registration.sh.
try {
    var functions = new ActiveXObject("Quillbank.Functions");
    WScript.Echo("created " + functions.EmptyGUID());
} catch (e) {
    WScript.Echo("not created " + (e.number >>> 0).toString(16));
}
