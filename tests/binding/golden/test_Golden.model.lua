return {
 ["enums"] = {
  "test::Vector::Axis"
 },
 ["foreignEnums"] = {},
 ["includes"] = {
  "#include \"Fixture.h\""
 },
 ["items"] = {
  {
   ["items"] = {
    {
     ["base"] = "",
     ["collected"] = true,
     ["doc"] = {
      "Every kind of member once; the files that it gives are kept and compared."
     },
     ["items"] = {
      {
       ["doc"] = {
        "Directions."
       },
       ["items"] = {
        {
         ["doc"] = {
          "To the right."
         },
         ["name"] = "X",
         ["value"] = "0"
        },
        {
         ["doc"] = {},
         ["name"] = "Y",
         ["value"] = "1"
        },
        {
         ["doc"] = {},
         ["name"] = "UP",
         ["value"] = "2"
        }
       },
       ["name"] = "test::Vector::Axis",
       ["tag"] = "enum"
      },
      {
       ["args"] = {
        {
         ["const"] = false,
         ["cpp"] = "double",
         ["kind"] = "number",
         ["n"] = 2,
         ["name"] = "value"
        }
       },
       ["call"] = "new",
       ["cname"] = "tolua_test_Golden_test_Vector_new",
       ["constructor"] = true,
       ["doc"] = {
        "All elements alike, or a table of three."
       },
       ["errorName"] = "new",
       ["name"] = "new",
       ["number"] = 0,
       ["result"] = {
        ["cpp"] = "test::Vector",
        ["kind"] = "pointer",
        ["typeString"] = "test::Vector"
       },
       ["self"] = "class",
       ["static"] = false,
       ["tag"] = "function"
      },
      {
       ["args"] = {
        {
         ["const"] = true,
         ["cpp"] = "float",
         ["dim"] = "3",
         ["element"] = "number",
         ["kind"] = "array",
         ["n"] = 2,
         ["name"] = "v"
        }
       },
       ["call"] = "new",
       ["cname"] = "tolua_test_Golden_test_Vector_new",
       ["constructor"] = true,
       ["doc"] = {},
       ["errorName"] = "new",
       ["name"] = "new",
       ["number"] = 1,
       ["result"] = {
        ["cpp"] = "test::Vector",
        ["kind"] = "pointer",
        ["typeString"] = "test::Vector"
       },
       ["self"] = "class",
       ["static"] = false,
       ["tag"] = "function"
      },
      {
       ["args"] = {
        {
         ["const"] = false,
         ["cpp"] = "int",
         ["kind"] = "number",
         ["n"] = 2,
         ["name"] = "i"
        }
       },
       ["call"] = "test::Vector::axis",
       ["cname"] = "tolua_test_Golden_test_Vector_axis",
       ["doc"] = {
        "The unit vector along an axis."
       },
       ["errorName"] = "axis",
       ["name"] = "axis",
       ["number"] = 0,
       ["result"] = {
        ["const"] = false,
        ["cpp"] = "test::Vector",
        ["kind"] = "value",
        ["name"] = "axis",
        ["typeString"] = "test::Vector"
       },
       ["self"] = "class",
       ["static"] = true,
       ["tag"] = "function"
      },
      {
       ["args"] = {},
       ["call"] = "length",
       ["cname"] = "tolua_test_Golden_test_Vector_length",
       ["doc"] = {
        "The length."
       },
       ["errorName"] = "length",
       ["name"] = "length",
       ["number"] = 0,
       ["result"] = {
        ["const"] = false,
        ["cpp"] = "double",
        ["kind"] = "number",
        ["name"] = "length"
       },
       ["self"] = "const",
       ["static"] = false,
       ["tag"] = "function"
      },
      {
       ["args"] = {
        {
         ["const"] = true,
         ["cpp"] = "test::Vector",
         ["kind"] = "reference",
         ["n"] = 2,
         ["name"] = "other",
         ["typeString"] = "const test::Vector"
        }
       },
       ["call"] = "set",
       ["cname"] = "tolua_test_Golden_test_Vector_set",
       ["doc"] = {
        "Copies a vector, or sets one element."
       },
       ["errorName"] = "set",
       ["name"] = "set",
       ["number"] = 0,
       ["result"] = {
        ["const"] = false,
        ["cpp"] = "void",
        ["kind"] = "void",
        ["name"] = "set"
       },
       ["self"] = "plain",
       ["static"] = false,
       ["tag"] = "function"
      },
      {
       ["args"] = {
        {
         ["const"] = false,
         ["cpp"] = "double",
         ["kind"] = "number",
         ["n"] = 2,
         ["name"] = "value"
        },
        {
         ["const"] = false,
         ["cpp"] = "unsigned int",
         ["default"] = "0",
         ["kind"] = "number",
         ["n"] = 3,
         ["name"] = "index"
        }
       },
       ["call"] = "tolua_test_Golden_test_Vector_set01_body",
       ["cname"] = "tolua_test_Golden_test_Vector_set",
       ["doc"] = {},
       ["errorName"] = "set",
       ["name"] = "set",
       ["number"] = 1,
       ["result"] = {
        ["const"] = false,
        ["cpp"] = "void",
        ["kind"] = "void",
        ["name"] = "set"
       },
       ["self"] = "plain",
       ["static"] = false,
       ["tag"] = "function"
      },
      {
       ["args"] = {
        {
         ["const"] = true,
         ["cpp"] = "test::Vector",
         ["kind"] = "reference",
         ["n"] = 2,
         ["name"] = "other",
         ["typeString"] = "const test::Vector"
        }
       },
       ["call"] = "operator+",
       ["cname"] = "tolua_test_Golden_test_Vector__add",
       ["doc"] = {
        "The sum."
       },
       ["errorName"] = "operator+",
       ["name"] = ".add",
       ["number"] = 0,
       ["operator"] = "+",
       ["result"] = {
        ["const"] = false,
        ["cpp"] = "test::Vector",
        ["kind"] = "value",
        ["name"] = "operator+",
        ["typeString"] = "test::Vector"
       },
       ["self"] = "const",
       ["static"] = false,
       ["tag"] = "function"
      },
      {
       ["args"] = {},
       ["call"] = "operator-",
       ["cname"] = "tolua_test_Golden_test_Vector__sub",
       ["doc"] = {
        "The negative."
       },
       ["errorName"] = "operator-",
       ["name"] = ".sub",
       ["number"] = 0,
       ["operator"] = "-",
       ["result"] = {
        ["const"] = false,
        ["cpp"] = "test::Vector",
        ["kind"] = "value",
        ["name"] = "operator-",
        ["typeString"] = "test::Vector"
       },
       ["self"] = "const",
       ["static"] = false,
       ["tag"] = "function"
      },
      {
       ["args"] = {
        {
         ["const"] = false,
         ["cpp"] = "int",
         ["kind"] = "number",
         ["n"] = 2,
         ["name"] = "i"
        },
        {
         ["const"] = false,
         ["cpp"] = "double",
         ["kind"] = "number",
         ["n"] = 3,
         ["name"] = "tolua_value"
        }
       },
       ["call"] = "operator&[]",
       ["cname"] = "tolua_test_Golden_test_Vector__seti",
       ["doc"] = {
        "The element at an index."
       },
       ["errorName"] = "operator&[]",
       ["name"] = ".seti",
       ["number"] = 0,
       ["operator"] = "&[]",
       ["result"] = {
        ["kind"] = "void"
       },
       ["self"] = "plain",
       ["static"] = false,
       ["tag"] = "function"
      },
      {
       ["args"] = {
        {
         ["const"] = false,
         ["cpp"] = "int",
         ["kind"] = "number",
         ["n"] = 2,
         ["name"] = "i"
        }
       },
       ["call"] = "operator[]",
       ["cname"] = "tolua_test_Golden_test_Vector__geti",
       ["doc"] = {},
       ["errorName"] = "operator[]",
       ["name"] = ".geti",
       ["number"] = 0,
       ["operator"] = "[]",
       ["result"] = {
        ["const"] = false,
        ["cpp"] = "double",
        ["kind"] = "number",
        ["name"] = "operator[]"
       },
       ["self"] = "plain",
       ["static"] = false,
       ["tag"] = "function"
      },
      {
       ["args"] = {},
       ["call"] = "operator test::Pair",
       ["cname"] = "tolua_test_Golden_test_Vector__test__Pair",
       ["doc"] = {
        "The first two elements."
       },
       ["errorName"] = "operatortest::Pair",
       ["name"] = ".test::Pair",
       ["number"] = 0,
       ["result"] = {
        ["const"] = false,
        ["cpp"] = "test::Pair",
        ["kind"] = "value",
        ["name"] = "operatortest::Pair",
        ["typeString"] = "test::Pair"
       },
       ["self"] = "const",
       ["static"] = false,
       ["tag"] = "function"
      },
      {
       ["doc"] = {
        "The first element."
       },
       ["errorName"] = "x",
       ["get"] = "tolua_get_test__Vector_x",
       ["member"] = "x",
       ["name"] = "x",
       ["readonly"] = false,
       ["set"] = "tolua_set_test__Vector_x",
       ["static"] = false,
       ["tag"] = "variable",
       ["type"] = {
        ["const"] = false,
        ["cpp"] = "double",
        ["kind"] = "number",
        ["name"] = "x"
       }
      }
     },
     ["name"] = "Vector",
     ["printed"] = true,
     ["tag"] = "class",
     ["type"] = "test::Vector"
    },
    {
     ["base"] = "kel::Referenced",
     ["collected"] = true,
     ["doc"] = {
      "A counted object with a second base."
     },
     ["items"] = {
      {
       ["args"] = {
        {
         ["const"] = true,
         ["cpp"] = "std::string",
         ["inout"] = true,
         ["kind"] = "string",
         ["n"] = 2,
         ["name"] = "name"
        }
       },
       ["call"] = "new",
       ["cname"] = "tolua_test_Golden_test_Body_new",
       ["constructor"] = true,
       ["doc"] = {
        "A body, with a name that comes back."
       },
       ["errorName"] = "new",
       ["name"] = "new",
       ["number"] = 0,
       ["result"] = {
        ["cpp"] = "test::Body",
        ["kind"] = "pointer",
        ["typeString"] = "test::Body"
       },
       ["self"] = "class",
       ["static"] = false,
       ["tag"] = "function"
      },
      {
       ["args"] = {},
       ["call"] = "getName",
       ["cname"] = "tolua_test_Golden_test_Body_Name",
       ["doc"] = {
        "The name, by another name."
       },
       ["errorName"] = "getName",
       ["name"] = "Name",
       ["number"] = 0,
       ["result"] = {
        ["const"] = false,
        ["cpp"] = "std::string",
        ["kind"] = "string",
        ["name"] = "getName"
       },
       ["self"] = "const",
       ["static"] = false,
       ["tag"] = "function"
      },
      {
       ["args"] = {
        {
         ["const"] = true,
         ["cpp"] = "test::Vector",
         ["default"] = "test::Vector()",
         ["kind"] = "reference",
         ["n"] = 2,
         ["name"] = "p",
         ["typeString"] = "const test::Vector"
        }
       },
       ["call"] = "setPosition",
       ["cname"] = "tolua_test_Golden_test_Body_setPosition",
       ["doc"] = {
        "Moves; without a place, to 0."
       },
       ["errorName"] = "setPosition",
       ["name"] = "setPosition",
       ["number"] = 0,
       ["result"] = {
        ["const"] = false,
        ["cpp"] = "void",
        ["kind"] = "void",
        ["name"] = "setPosition"
       },
       ["self"] = "plain",
       ["static"] = false,
       ["tag"] = "function"
      },
      {
       ["args"] = {},
       ["call"] = "position",
       ["cname"] = "tolua_test_Golden_test_Body_position",
       ["doc"] = {
        "A view of the position."
       },
       ["errorName"] = "position",
       ["name"] = "position",
       ["number"] = 0,
       ["result"] = {
        ["const"] = false,
        ["cpp"] = "test::Vector",
        ["kind"] = "reference",
        ["name"] = "position",
        ["typeString"] = "test::Vector"
       },
       ["self"] = "plain",
       ["static"] = false,
       ["tag"] = "function"
      },
      {
       ["args"] = {},
       ["call"] = "position",
       ["cname"] = "tolua_test_Golden_test_Body_position",
       ["doc"] = {},
       ["errorName"] = "position",
       ["name"] = "position",
       ["number"] = 1,
       ["result"] = {
        ["const"] = true,
        ["cpp"] = "test::Vector",
        ["kind"] = "reference",
        ["name"] = "position",
        ["typeString"] = "const test::Vector"
       },
       ["self"] = "const",
       ["static"] = false,
       ["tag"] = "function"
      },
      {
       ["doc"] = {
        "What it follows."
       },
       ["errorName"] = "target",
       ["get"] = "tolua_get_test__Body_target_ptr",
       ["member"] = "target",
       ["name"] = "target",
       ["readonly"] = false,
       ["set"] = "tolua_set_test__Body_target_ptr",
       ["static"] = false,
       ["tag"] = "variable",
       ["type"] = {
        ["const"] = false,
        ["cpp"] = "test::Body",
        ["kind"] = "pointer",
        ["name"] = "target",
        ["typeString"] = "test::Body"
       }
      },
      {
       ["doc"] = {
        "Only read."
       },
       ["errorName"] = "label",
       ["get"] = "tolua_get_test__Body_label",
       ["member"] = "label",
       ["name"] = "label",
       ["readonly"] = true,
       ["set"] = "tolua_set_test__Body_label",
       ["static"] = false,
       ["tag"] = "variable",
       ["type"] = {
        ["const"] = false,
        ["cpp"] = "std::string",
        ["kind"] = "string",
        ["name"] = "label"
       }
      },
      {
       ["doc"] = {},
       ["errorName"] = "__test",
       ["get"] = "tolua_get_test__Body___test__Streamed__",
       ["inherits"] = "test::Streamed",
       ["member"] = "__test::Streamed__",
       ["name"] = "__test__Streamed__",
       ["readonly"] = true,
       ["set"] = "tolua_set_test__Body___test__Streamed__",
       ["static"] = false,
       ["tag"] = "variable",
       ["type"] = {
        ["const"] = false,
        ["cpp"] = "test::Streamed",
        ["kind"] = "value",
        ["name"] = "__test",
        ["typeString"] = "test::Streamed"
       }
      }
     },
     ["name"] = "Body",
     ["tag"] = "class",
     ["type"] = "test::Body"
    },
    {
     ["base"] = "",
     ["doc"] = {},
     ["items"] = {},
     ["name"] = "Unused",
     ["tag"] = "class",
     ["type"] = "test::Unused"
    },
    {
     ["base"] = "",
     ["doc"] = {
      "Deleted by hand."
     },
     ["items"] = {
      {
       ["args"] = {},
       ["call"] = "delete",
       ["cname"] = "tolua_test_Golden_test_Holder_delete",
       ["destructor"] = true,
       ["doc"] = {},
       ["errorName"] = "delete",
       ["name"] = "delete",
       ["number"] = 0,
       ["result"] = {
        ["kind"] = "void"
       },
       ["self"] = "plain",
       ["static"] = false,
       ["tag"] = "function"
      }
     },
     ["name"] = "Holder",
     ["tag"] = "class",
     ["type"] = "test::Holder"
    }
   },
   ["name"] = "test",
   ["tag"] = "module"
  },
  {
   ["number"] = 1,
   ["tag"] = "chunk",
   ["text"] = "\
function test.Body:both( other )\
return self, other\
end"
  }
 },
 ["name"] = "test_Golden",
 ["types"] = {
  "kel::Referenced",
  "test::Body",
  "test::Holder",
  "test::Pair",
  "test::Streamed",
  "test::Unused",
  "test::Vector"
 }
}
