// Finds out what the web engine of this machine can play and show. Each check has a name, whether it holds, and the
// Debian package to install otherwise.
function engineChecks() {
  var video = document.createElement('video');
  var context = document.createElement('canvas').getContext('2d');

  function plays(type) {
    return video.canPlayType(type) !== '';
  }

  function drawn(letter) {
    context.clearRect(0, 0, 300, 150);
    context.font = '40px sans-serif';
    context.fillText(letter, 9, 60);
    return context.canvas.toDataURL();
  }

  // Letters without a font all look like one that does not exist.
  function shows(letter) {
    return drawn(letter) !== drawn('\u0378');
  }

  var good = 'gstreamer1.0-plugins-good';
  var bad = 'gstreamer1.0-plugins-bad';
  var libav = 'gstreamer1.0-libav';
  var cjk = 'fonts-wqy-microhei';
  return [
    ['WebM (VP9, Opus)', plays('video/webm; codecs="vp9, opus"'), good],
    ['MP4 (H.264, AAC)', plays('video/mp4; codecs="avc1.42E01E, mp4a.40.2"'), libav],
    ['HLS (M3U8)', plays('application/vnd.apple.mpegurl'), bad],
    ['MP3', plays('audio/mpeg'), good],
    ['Chinese letters', shows('\u6f22'), cjk],
    ['Japanese letters', shows('\u3042'), cjk],
    ['Korean letters', shows('\ud55c'), cjk],
  ];
}
