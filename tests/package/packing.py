"""Packs for the tests, what the build left or something like it."""
import os
import pathlib
import subprocess

TOP = pathlib.Path(__file__).resolve().parent.parent.parent
BUILT = TOP / "build/windows/tavrinconfig.exe"


def pack(folder, *options, top=TOP, umask=0o022, **environment):
    """Runs script/package, that of the clone at `top`, into a folder; returns what it printed."""
    result = subprocess.run(
        [top / "script/package", "--built", BUILT, *options, folder], check=False, text=True, umask=umask,
        stdout=subprocess.PIPE, stderr=subprocess.STDOUT, env={**os.environ, **environment})
    if result.returncode:
        raise RuntimeError(result.stdout)
    return result.stdout


def make_certificate(folder):
    """A certificate that signs itself, valid for a day; returns the environment that script/sign wants."""
    certificate, key = folder / "certificate.pem", folder / "key.pem"
    subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "1",
                    "-subj", "/CN=Thrown away after the test", "-addext", "extendedKeyUsage=codeSigning",
                    "-keyout", key, "-out", certificate], check=True, capture_output=True)
    return {"TAVRIN_SIGN_CERTIFICATE": str(certificate), "TAVRIN_SIGN_KEY": str(key)}


def is_signed(file, certificate):
    """Whether a file is as it was when the certificate signed it."""
    return subprocess.run(["osslsigncode", "verify", "-CAfile", certificate, "-in", file], check=False,
                          capture_output=True).returncode == 0
