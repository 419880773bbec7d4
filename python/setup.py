"""The version is the library's."""
import json
import pathlib

from setuptools import setup

api = json.loads(pathlib.Path(__file__).with_name("kxmaths5").joinpath("kxmaths5.json").read_text("utf-8"))
setup(version=api["version"])
