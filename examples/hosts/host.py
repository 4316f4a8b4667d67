"""A host in Python: host.py LIBRARY FILE FAULTY-FILE"""
import ctypes
import sys

zon = ctypes.CDLL(sys.argv[1])


class Handle(ctypes.c_void_p):
    pass


for name in ("zonLoadFile", "zonFindSectionByHandle", "zonKeywordByNameNum", "zonParamByNum"):
    getattr(zon, name).restype = Handle
for name in ("zonGetString", "zonGetFilename", "zonGetSyntaxErr"):
    getattr(zon, name).restype = ctypes.c_char_p
zon.zonGetDouble.restype = ctypes.c_double


def value(section, keyword):
    return zon.zonParamByNum(zon.zonKeywordByNameNum(zon.zonFindSectionByHandle(file, section), keyword, 1), 1)


file = zon.zonLoadFile(sys.argv[2].encode(), 1)
print(zon.zonGetInt(value(b"Harbour", b"Basins")))
print(f"{zon.zonGetDouble(value(b'Quay:2', b'Length')):.2f}")
print(zon.zonGetString(value(b"Quay:2/Berth", b"Foreman")).decode())
print(zon.zonGetFilename(value(b"Traffic/Ship", b"Papers")).decode())
zon.zonClose(ctypes.byref(file))

file = zon.zonLoadFile(sys.argv[3].encode(), 1)
line, position = ctypes.c_uint(), ctypes.c_uint()
message = zon.zonGetSyntaxErr(file, ctypes.byref(line), ctypes.byref(position), None)
print(f"{line.value}:{position.value}: {message.decode()}")
zon.zonClose(ctypes.byref(file))
