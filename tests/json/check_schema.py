"""Checks every JSON that the round-trip tests write against the schema.

    check_schema.py JSON_TESTS SCHEMA FOLDER

Runs the JSON_TESTS program's round-trip tests with QUILLBANK_JSON_DUMP_DIR
set to FOLDER (emptied first), then validates every file written there
against SCHEMA with jsonschema. Fails when nothing was written.
"""

import json
import os
import shutil
import subprocess
import sys

import jsonschema


def main() -> int:
    program, schema_path, folder = sys.argv[1:4]
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    environment = dict(os.environ, QUILLBANK_JSON_DUMP_DIR=folder)
    subprocess.run([program, "--gtest_filter=JsonRoundTrip.*"], env=environment, check=True,
                   stdout=subprocess.DEVNULL)
    with open(schema_path, encoding="utf-8") as f:
        schema = json.load(f)
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    names = sorted(os.listdir(folder))
    failures = 0
    for name in names:
        with open(os.path.join(folder, name), encoding="utf-8") as f:
            document = json.load(f)
        for error in validator.iter_errors(document):
            failures += 1
            print(f"{name}: /{'/'.join(str(p) for p in error.absolute_path)}: {error.message}")
            break
    print(f"{len(names) - failures} passed, {failures} failed")
    return 1 if failures or not names else 0


if __name__ == "__main__":
    sys.exit(main())
