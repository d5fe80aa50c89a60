"""As much of JSON Schema as the description of the HTTP face uses."""

KINDS = {"object": dict, "array": list, "string": str, "integer": int, "boolean": bool, "null": type(None)}


def check(schemas, schema, value, where):
    """Raises an AssertionError that names the place where the value is not as the schema says."""
    if "$ref" in schema:
        schema = schemas[schema["$ref"].split("/")[-1]]
    if "oneOf" in schema:
        found = [each for each in schema["oneOf"] if fits(schemas, each, value)]
        assert len(found) == 1, "%s fits %d of its schemas: %r" % (where, len(found), value)
        return
    wanted = schema.get("type", [])
    kinds = tuple(KINDS[each] for each in ([wanted] if isinstance(wanted, str) else wanted))
    assert not kinds or isinstance(value, kinds), "%s is no %s: %r" % (where, wanted, value)
    assert value in schema.get("enum", [value]), "%s is none of %s: %r" % (where, schema.get("enum"), value)
    for each in value if isinstance(value, list) else []:
        check(schemas, schema.get("items", {}), each, where + "[]")
    if isinstance(value, dict):
        missing = set(schema.get("required", [])) - set(value)
        assert not missing, "%s has no %s" % (where, missing)
        for name, each in value.items():
            part = schema.get("properties", {}).get(name, schema.get("additionalProperties", {}))
            assert part is not False, "%s must not have %s" % (where, name)
            check(schemas, part, each, where + "." + name)


def fits(schemas, schema, value):
    try:
        check(schemas, schema, value, "")
        return True
    except AssertionError:
        return False
