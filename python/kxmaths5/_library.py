"""Finds the module and loads it."""
import ctypes
import os
import pathlib
import sys


def load(version):
    """The module that KXMATHS5_LIBRARY names, or the one beside this file, or the system's."""
    named = os.environ.get("KXMATHS5_LIBRARY")
    file = _file_name(version.split(".")[0])
    beside = pathlib.Path(__file__).parent / file
    path = named or (str(beside) if beside.exists() else file)
    try:
        return ctypes.CDLL(path)
    except OSError as error:
        where = "as KXMATHS5_LIBRARY says" if named else \
            f"set KXMATHS5_LIBRARY to its path, or put {file} beside {__file__}"
        raise ImportError(f"the library kxmaths5 can't be loaded, {where}: {error}") from error


def _file_name(major):
    if sys.platform == "win32":
        return "kxmaths5.dll"
    if sys.platform == "darwin":
        return f"libkxmaths5.{major}.dylib"
    return f"libkxmaths5.so.{major}"
