# convert: XML to the JSON form and back, by OUT's extension or --to.
quillbank_cli_test(convert.xml_to_json ARGS convert water-cycle.xml -o out.json INPUTS water-cycle.xml
                   OUTPUT out.json EXPECT_OUTPUT convert-water-cycle.json)
quillbank_cli_test(convert.json_to_xml ARGS convert water-cycle.json -o out.xml INPUTS water-cycle.json
                   OUTPUT out.xml EXPECT_OUTPUT convert-water-cycle.xml)
quillbank_cli_test(convert.to_option ARGS convert water-cycle.xml -o out.txt --to json INPUTS water-cycle.xml
                   OUTPUT out.txt EXPECT_OUTPUT convert-water-cycle.json)
quillbank_cli_test(convert.other_form_by_default ARGS convert water-cycle.json -o out INPUTS water-cycle.json
                   OUTPUT out EXPECT_OUTPUT convert-water-cycle.xml)
quillbank_cli_test(convert.stdin_json_to_stdout ARGS convert - -o - --to xml STDIN water-cycle.json
                   STDOUT convert-water-cycle.xml)
quillbank_cli_test(convert.bad_json ARGS convert bad.json -o out.xml INPUTS bad.json STATUS 2
                   STDERR convert-bad-json.err ABSENT out.xml)
quillbank_cli_test(convert.bad_xml ARGS convert broken.xml -o out.json INPUTS broken.xml STATUS 2
                   STDERR convert-broken.err ABSENT out.json)
quillbank_cli_test(convert.output_required ARGS convert water-cycle.xml INPUTS water-cycle.xml STATUS 2
                   STDERR convert-no-output.err)
