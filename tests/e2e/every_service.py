"""One question to every service, over both transports."""

import socket

from harness import SERVER_ADDRESS, request, wait_until

CLIENT_REQUEST = b"CVLC1" + bytes(19)
DAYTIME_LENGTHS = range(38, 80)

# Port, transport, what is sent, and the lengths that the answer may have. Over UDP the first
# datagram counts. UDP 519 is a second claim to a TCP port, and so never stands.
QUESTIONS = (
    (13, "tcp", b"", DAYTIME_LENGTHS), (13, "udp", b"x", DAYTIME_LENGTHS),
    (37, "tcp", b"", (4,)), (37, "udp", b"x", (1,)),
    (123, "tcp", request(), (48,)), (123, "udp", request(), (48,)),
    (519, "tcp", b"", (4,)),
    (3777, "tcp", CLIENT_REQUEST, (24,)), (3777, "udp", CLIENT_REQUEST, (24,)))


def Ask(port, transport, question, most=2048, timeout=2.0):
    """The answer, read up to MOST bytes; empty if there is none."""
    kind = socket.SOCK_STREAM if transport == "tcp" else socket.SOCK_DGRAM
    answer = b""
    with socket.socket(socket.AF_INET, kind) as client:
        client.settimeout(timeout)
        try:
            client.connect((SERVER_ADDRESS, port))
            if question:
                client.send(question)
            if transport == "udp":
                return client.recv(2048)
            while len(answer) < most and (piece := client.recv(2048)):
                answer += piece
        except OSError:  # no answer, or a connection dropped
            pass
    return answer


def ExpectAnswers():
    """Every service answers. Asked again, since some don't in millisecond 999."""
    for port, transport, question, lengths in QUESTIONS:
        wait_until(lambda: len(Ask(port, transport, question, lengths[-1])) in lengths,
                   f"an answer from {transport} {port}", 10)
