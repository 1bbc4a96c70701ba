"""Reads quillbank --json output from standard input: parses every line,
validates it against the report schema given as the first argument, and
prints the documents again with sorted keys, one member a line, for
comparison with an expected file. Exits 1 on the first line that is not
JSON or does not fit the schema."""
import json
import sys

import jsonschema

with open(sys.argv[1], encoding="utf-8") as f:
    schema = json.load(f)
validator = jsonschema.Draft202012Validator(schema)
validator.check_schema(schema)
count = 0
for number, line in enumerate(sys.stdin, 1):
    try:
        document = json.loads(line)
    except json.JSONDecodeError as e:
        print(f"line {number} is not JSON: {e}", file=sys.stderr)
        sys.exit(1)
    errors = sorted(validator.iter_errors(document), key=lambda e: list(e.path))
    if errors:
        print(f"line {number} does not fit the schema: {errors[0].message} at {list(errors[0].path)}",
              file=sys.stderr)
        sys.exit(1)
    print(json.dumps(document, sort_keys=True, indent=1, ensure_ascii=False))
    count += 1
print(f"{count} documents")
