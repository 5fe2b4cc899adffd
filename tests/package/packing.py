"""Packs for the tests, what the build left or something like it."""
import os
import pathlib
import subprocess

TOP = pathlib.Path(__file__).resolve().parent.parent.parent
BUILT = TOP / "build/windows/tavrinconfig.exe"


def pack(folder, *options, top=TOP, umask=0o022, built=BUILT, **environment):
    """Runs script/package, that of the clone at `top`, into a folder; returns what it printed."""
    result = subprocess.run(
        [top / "script/package", "--built", built, *options, folder], check=False, text=True, umask=umask,
        stdout=subprocess.PIPE, stderr=subprocess.STDOUT, env={**os.environ, **environment})
    if result.returncode:
        raise RuntimeError(result.stdout)
    return result.stdout


def make_certificate(folder):
    """A certificate below one that signs itself, valid for a day; returns the environment that package/sign wants."""
    certificate, key, root = folder / "certificate.pem", folder / "key.pem", folder / "root.pem"
    new = ["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "1"]
    subprocess.run([*new, "-subj", "/CN=An authority of the test", "-keyout", folder / "root-key.pem", "-out", root],
                   check=True, capture_output=True)
    subprocess.run([*new, "-subj", "/CN=Thrown away after the test", "-CA", root, "-CAkey", folder / "root-key.pem",
                    "-addext", "extendedKeyUsage=codeSigning", "-addext", "basicConstraints=critical,CA:FALSE",
                    "-keyout", key, "-out", certificate], check=True, capture_output=True)
    with certificate.open("a") as chain:
        chain.write(root.read_text())
    return {"TAVRIN_SIGN_CERTIFICATE": str(certificate), "TAVRIN_SIGN_KEY": str(key)}


def is_signed(file, certificate):
    """Whether a file is as it was when the certificate signed it."""
    return subprocess.run(["osslsigncode", "verify", "-CAfile", certificate, "-in", file], check=False,
                          capture_output=True).returncode == 0


def has_signature(file, certificate):
    """Whether FILE.p7s says that a file is as it was when the certificate signed it."""
    return subprocess.run(["openssl", "cms", "-verify", "-binary", "-inform", "PEM", "-in", f"{file}.p7s", "-content",
                           file, "-CAfile", certificate, "-purpose", "any", "-out", os.devnull], check=False,
                          capture_output=True).returncode == 0


def make_token(folder, key, pin):
    """A token in software that holds the key and gives it to nobody; returns the environment that package/sign wants."""
    (folder / "tokens").mkdir()
    configuration = folder / "token.conf"
    configuration.write_text(f"directories.tokendir = {folder}/tokens\n")
    (folder / "pin.txt").write_text(pin + "\n")
    environment = {"SOFTHSM2_CONF": str(configuration), "TAVRIN_SIGN_KEY": "pkcs11:token=test;object=signing",
                   "TAVRIN_SIGN_MODULE": "/usr/lib/softhsm/libsofthsm2.so",
                   "TAVRIN_SIGN_PASSWORD": str(folder / "pin.txt")}
    for command in (["--init-token", "--free", "--label", "test", "--so-pin", pin, "--pin", pin],
                    ["--import", key, "--token", "test", "--label", "signing", "--id", "01", "--pin", pin]):
        subprocess.run(["softhsm2-util", *command], check=True, capture_output=True, env={**os.environ, **environment})
    return environment
